#include "CSystemConfigSheet.h"

#include "options/ui/CAsciiPage.h"
#include "options/ui/CFtpPage.h"
#include "options/ui/CLogPage.h"
#include "options/ui/CMiscPage.h"
#include "options/ui/CProxiesPage.h"
#include "options/ui/CQueuePage.h"
#include "options/ui/CSoundsPage.h"
#include "options/ui/CSystemPage.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace zelto {

CSystemConfigSheet::CSystemConfigSheet(SoundPlayer& player, Notifier& notifier, QWidget* parent)
    : QDialog(parent), notifier_(notifier)
{
    setObjectName(QStringLiteral("systemConfig"));
    setWindowTitle(StringTable::text(ids::kOptionsCaption));
    pages_ = { new CFtpPage, new CProxiesPage, new CSystemPage, new CLogPage, new CAsciiPage,
        new CSoundsPage(player), new CQueuePage, new CMiscPage };
    const QString titles[] = { tr("FTP"), tr("Proxies"), tr("System"), tr("Log"),
        tr("Ascii Transfer Settings"), tr("Sounds"), tr("Queue"), tr("Misc") };
    tabs_ = new QTabWidget;
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        tabs_->addTab(pages_[i], titles[i]);
        connect(pages_[i], &COptionsPage::modified, this, &CSystemConfigSheet::updateApply);
    }
    // Each page reads its keys when it is first shown (connected after the tabs were added, which
    // shows the first).
    connect(tabs_, &QTabWidget::currentChanged, this, [this](int index) {
        if (index >= 0)
            page(index).load();
    });

    buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel
        | QDialogButtonBox::Apply | QDialogButtonBox::Help);
    connect(buttons_, &QDialogButtonBox::accepted, this, &CSystemConfigSheet::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons_->button(QDialogButtonBox::Apply), &QPushButton::clicked, this,
        &CSystemConfigSheet::apply);
    const auto help = [this] { Q_EMIT helpRequested(page(tabs_->currentIndex()).helpAnchor()); };
    connect(buttons_, &QDialogButtonBox::helpRequested, this, help);
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, help);
    updateApply();

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_);
    layout->addWidget(buttons_);
    restorePlacement();
}

void CSystemConfigSheet::restorePlacement()
{
    using namespace settings::geometry;
    const QString section = QLatin1StringView(kOptionsSheet);
    const auto read = [&](const char* key) {
        return SettingsStore::getInt(section, QLatin1StringView(key), -1);
    };
    const QSize size(read(kWidth), read(kHeight));
    const QPoint place(read(kX), read(kY));
    if (size.width() <= 0 || size.height() <= 0)
        return;
    resize(size.expandedTo(minimumSizeHint()));
    // A place on a screen that is gone would leave the sheet where nobody sees it.
    if (QGuiApplication::screenAt(place))
        move(place);
}

void CSystemConfigSheet::hideEvent(QHideEvent* event)
{
    QDialog::hideEvent(event);
    using namespace settings::geometry;
    const QString section = QLatin1StringView(kOptionsSheet);
    SettingsStore::writeInt(section, QLatin1StringView(kWidth), width());
    SettingsStore::writeInt(section, QLatin1StringView(kHeight), height());
    SettingsStore::writeInt(section, QLatin1StringView(kX), x());
    SettingsStore::writeInt(section, QLatin1StringView(kY), y());
}

void CSystemConfigSheet::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    page(tabs_->currentIndex()).load();
}

COptionsPage& CSystemConfigSheet::page(int index) const
{
    return *pages_.at(std::size_t(index));
}

bool CSystemConfigSheet::apply()
{
    bool saved = false;
    bool logChanged = false;
    bool refused = false;
    for (COptionsPage* page : pages_) {
        if (!page->isModified())
            continue;
        if (!page->confirm(notifier_)) {
            tabs_->setCurrentWidget(page);
            refused = true;
            // The Queue page keeps all but the missing number, and those apply as well.
            saved = saved || page->kind() == OptionPageKind::Queue;
            break;
        }
        saved = true;
        logChanged = logChanged || page->kind() == OptionPageKind::Log;
    }
    if (saved)
        Q_EMIT applied(logChanged);
    updateApply();
    return !refused;
}

void CSystemConfigSheet::accept()
{
    if (apply())
        QDialog::accept();
}

void CSystemConfigSheet::updateApply()
{
    buttons_->button(QDialogButtonBox::Apply)
        ->setEnabled(std::any_of(
            pages_.begin(), pages_.end(), [](const COptionsPage* p) { return p->isModified(); }));
}

} // namespace zelto
