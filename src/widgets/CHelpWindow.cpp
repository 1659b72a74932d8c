#include "CHelpWindow.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBlock>

#include <algorithm>

// The manual is compiled into this static library, where nothing else would pull it in.
static void loadManualResource()
{
    Q_INIT_RESOURCE(manual);
}

namespace zelto {

CHelpWindow::CHelpWindow(QWidget* parent) : QTextBrowser(parent)
{
    loadManualResource();
    setWindowFlag(Qt::Window);
    setObjectName(QStringLiteral("helpWindow"));
    setWindowTitle(tr("Zelto Help"));
    // Links between sections name headings, which the viewer does not know as anchors.
    setOpenLinks(false);
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& url) {
        if (url.scheme().isEmpty() && url.path().isEmpty())
            goTo(url.fragment());
        else
            QDesktopServices::openUrl(url);
    });
    QFile manual(QStringLiteral(":/manual/manual.md"));
    if (manual.open(QIODevice::ReadOnly))
        setMarkdown(QString::fromUtf8(manual.readAll()));
}

void CHelpWindow::showSection(const QString& anchor, QWidget* parent)
{
    static QPointer<CHelpWindow> open;
    // Over a modal window the help must be that window's own, or the modal window would block it.
    if (QWidget* modal = QApplication::activeModalWidget()) {
        parent = modal;
        if (open && open->parentWidget() != modal) {
            open->close();
            open = nullptr;
        }
    }
    if (!open) {
        open = new CHelpWindow(parent);
        open->setAttribute(Qt::WA_DeleteOnClose);
        // A readable page: two thirds of the screen's height, centred on the window asking.
        const QRect screen = (parent ? parent->screen() : open->screen())->availableGeometry();
        open->resize(std::min(screen.width(), open->fontMetrics().averageCharWidth() * 90),
            screen.height() * 2 / 3);
        const QPoint centre = parent ? parent->frameGeometry().center() : screen.center();
        open->move(centre - QPoint(open->width() / 2, open->height() / 2));
    }
    open->show();
    open->goTo(anchor);
    open->raise();
    open->activateWindow();
}

void CHelpWindow::bindHelpKey(QWidget& window, const QString& anchor)
{
    auto* key = new QShortcut(QKeySequence::HelpContents, &window);
    QObject::connect(
        key, &QShortcut::activated, &window, [&window, anchor] { showSection(anchor, &window); });
}

QString CHelpWindow::anchorOf(const QString& heading)
{
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c.isLetterOrNumber() || c == u'-' || c == u'_')
            anchor += c;
        else if (c == u' ')
            anchor += u'-';
    }
    return anchor;
}

bool CHelpWindow::goTo(const QString& anchor)
{
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0 || anchorOf(block.text()) != anchor)
            continue;
        // The heading at the top of the view, not merely somewhere in it.
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
        QTextCursor cursor(block);
        setTextCursor(cursor);
        ensureCursorVisible();
        return true;
    }
    verticalScrollBar()->setValue(0);
    return false;
}

} // namespace zelto
