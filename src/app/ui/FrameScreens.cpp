#include "FrameScreens.h"

#include "app/ui/FrameViews.h"
#include "distribution/ui/CFtpView.h"
#include "log/ui/CLogView.h"
#include "profiles/ui/CFileListView.h"
#include "settings/SettingsKeys.h"
#include "widgets/StoredSplitter.h"

#include <QLabel>
#include <QStackedWidget>

namespace zelto {
namespace {

int indexOf(Screen screen)
{
    return static_cast<int>(screen) - cmd::kStandardFtp;
}

QString splitterName(int number)
{
    return QString::fromLatin1(settings::geometry::kMainSplitterPattern).arg(number);
}

// What an empty pane shows until its view is built.
QWidget* placeholder(const QString& hint)
{
    auto* label = new QLabel(hint);
    label->setAlignment(Qt::AlignCenter);
    label->setFrameShape(QFrame::StyledPanel);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setBackgroundRole(QPalette::Base);
    label->setAutoFillBackground(true);
    return label;
}

QWidget* viewOr(QWidget* view, const QString& hint)
{
    return view ? view : placeholder(hint);
}

} // namespace

FrameScreens::FrameScreens(const FrameViews& views, QWidget* parent)
    : outer_(new StoredSplitter(splitterName(1), Qt::Vertical, parent)), work_(new QStackedWidget)
{
    outer_->addWidget(work_);
    outer_->addWidget(viewOr(views.log, QObject::tr("Log")));

    const std::array<std::array<QWidget*, 2>, 3> panes { {
        { viewOr(views.remoteSite, QObject::tr("Remote site")),
            viewOr(views.localFiles, QObject::tr("Local files")) },
        { viewOr(views.firstRemote, QObject::tr("First remote site")),
            viewOr(views.secondRemote, QObject::tr("Second remote site")) },
        { viewOr(views.sitesList, QObject::tr("Sites")),
            viewOr(views.fileList, QObject::tr("Files to send")) },
    } };
    for (std::size_t i = 0; i < panes.size(); ++i) {
        auto* splitter = new StoredSplitter(splitterName(int(i) + 2), Qt::Horizontal);
        for (QWidget* pane : panes[i])
            splitter->addWidget(pane);
        work_->addWidget(splitter);
        screens_[i] = splitter;
    }
    outer_->restoreSizes();
    for (StoredSplitter* splitter : screens_)
        splitter->restoreSizes();
    work_->setCurrentIndex(indexOf(current_));
}

QWidget* FrameScreens::widget() const
{
    return outer_;
}

void FrameScreens::show(Screen screen)
{
    current_ = screen;
    work_->setCurrentIndex(indexOf(screen));
}

void FrameScreens::setSplit(Qt::Orientation orientation)
{
    for (StoredSplitter* splitter : screens_) {
        if (splitter->orientation() == orientation)
            continue;
        // Each way keeps its own sizes, so going back restores the earlier panes.
        splitter->saveSizes();
        splitter->setOrientation(orientation);
        splitter->restoreSizes();
    }
}

void FrameScreens::saveSizes() const
{
    outer_->saveSizes();
    for (const StoredSplitter* splitter : screens_)
        splitter->saveSizes();
}

Screen FrameScreens::fromWord(const QString& word)
{
    using namespace settings::config;
    if (word == QLatin1StringView(kScreenRemoteLocal))
        return Screen::StandardFtp;
    if (word == QLatin1StringView(kScreenRemoteRemote))
        return Screen::RemoteFtp;
    // The screen that sends to many sites is the one the program is for.
    return Screen::MultiplePut;
}

QString FrameScreens::wordOf(Screen screen)
{
    using namespace settings::config;
    switch (screen) {
    case Screen::StandardFtp:
        return QLatin1StringView(kScreenRemoteLocal);
    case Screen::RemoteFtp:
        return QLatin1StringView(kScreenRemoteRemote);
    case Screen::MultiplePut:
        break;
    }
    return QLatin1StringView(kScreenMultiplePut);
}

} // namespace zelto
