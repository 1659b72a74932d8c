#include "LogPageLayout.h"

#include "log/LogRecord.h"
#include "log/ui/LogTableModel.h"

#include <QFontMetrics>
#include <QPaintDevice>
#include <QPainter>

#include <algorithm>

namespace zelto {

LogPageLayout::LogPageLayout(const QFont& font, QPaintDevice& device)
    : font_(font, &device)
    , page_(0, 0, device.width(), device.height())
    , lineHeight_(std::max(1, QFontMetrics(font_, &device).lineSpacing()))
    // A row's line must end inside the page; a page too small for any still carries one row,
    // so that printing always comes to an end.
    , rowsPerPage_(std::max(1, page_.height() / lineHeight_ - kFirstRowLine))
{
}

int LogPageLayout::pageCount(qsizetype rows) const
{
    return static_cast<int>((rows + rowsPerPage_ - 1) / rowsPerPage_);
}

void LogPageLayout::drawPage(QPainter& painter, int page, const QStringList& lines) const
{
    if (lines.isEmpty())
        return;
    painter.save();
    painter.setFont(font_);
    const QFontMetrics metrics = painter.fontMetrics();
    const auto drawLine = [&](int line, const QString& text) {
        painter.drawText(QPoint(page_.left(), page_.top() + line * lineHeight_ + metrics.ascent()),
            metrics.elidedText(text, Qt::ElideRight, page_.width()));
    };
    drawLine(kHeaderLine, QStringLiteral("Page No %1").arg(page));
    const qsizetype first = qsizetype(page - 1) * rowsPerPage_;
    const qsizetype end = std::min(lines.size(), first + rowsPerPage_);
    for (qsizetype row = first; row < end; ++row)
        drawLine(kFirstRowLine + static_cast<int>(row - first), lines[row]);
    painter.restore();
}

QString LogPageLayout::rowLine(const LogRecord& record)
{
    using Column = LogTableModel::Column;
    QStringList columns;
    for (const Column column : { Column::Message, Column::Date, Column::Time, Column::Field1,
             Column::Field2, Column::Field3, Column::Detail })
        columns.append(LogTableModel::cellText(record, column));
    return columns.join(u' ');
}

} // namespace zelto
