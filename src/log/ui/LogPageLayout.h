#pragma once

#include <QFont>
#include <QRect>
#include <QStringList>

class QPaintDevice;
class QPainter;

namespace zelto {

struct LogRecord;

// How the shown log rows go onto printed pages: the header "Page No n" two lines down, then the
// page's share of the rows, one line each, from the fifth line on. Line height and rows per page
// come from the print font on the device, so they are fixed when printing begins.
class LogPageLayout final {
public:
    // Lays out on the whole of `device` (a printer's printable area, or any paint device).
    LogPageLayout(const QFont& font, QPaintDevice& device);

    [[nodiscard]] int lineHeight() const { return lineHeight_; }
    [[nodiscard]] int rowsPerPage() const { return rowsPerPage_; }
    // Pages needed for `rows` lines; none for none.
    [[nodiscard]] int pageCount(qsizetype rows) const;

    // Draws page `page` (counted from 1) of `lines`, each line cut to the page's width.
    void drawPage(QPainter& painter, int page, const QStringList& lines) const;

    // The printed line of a record: event, date, time, the three fields and the detail; the
    // sequence number is left out.
    [[nodiscard]] static QString rowLine(const LogRecord& record);

private:
    static constexpr int kHeaderLine = 2;
    static constexpr int kFirstRowLine = 5;

    QFont font_;
    QRect page_;
    int lineHeight_;
    int rowsPerPage_;
};

} // namespace zelto
