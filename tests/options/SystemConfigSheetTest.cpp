#include "TempSettings.h"
#include "TestNotifier.h"
#include "log/LogListener.h"
#include "log/LogRecord.h"
#include "log/LogWriter.h"
#include "options/SoundPlayer.h"
#include "options/ui/COptionsPage.h"
#include "options/ui/CSystemConfigSheet.h"
#include "platform/StringIds.h"
#include "settings/SettingsStore.h"
#include "widgets/CHelpWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

namespace zelto {
namespace {

using namespace settings;

QString plain(QString text)
{
    return text.remove(u'&').remove(u':').trimmed();
}

// The control of `page` whose text, without its access key, is `text`.
template <typename T> T* control(QWidget& page, const char* text)
{
    for (T* candidate : page.findChildren<T*>()) {
        if (plain(candidate->text()) == QLatin1StringView(text))
            return candidate;
    }
    ADD_FAILURE() << "no control " << text;
    return nullptr;
}

// The edit box labelled `label`.
QLineEdit* edit(QWidget& page, const char* label)
{
    return qobject_cast<QLineEdit*>(control<QLabel>(page, label)->buddy());
}

void type(QWidget& page, const char* label, const char* text)
{
    QLineEdit* box = edit(page, label);
    box->clear();
    QTest::keyClicks(box, QString::fromLatin1(text));
}

QString storedText(const char* section, const char* key)
{
    return SettingsStore::getText(
        QLatin1StringView(section), QLatin1StringView(key), QStringLiteral("absent"));
}

// Keeps the files the sheet plays.
struct RecordingPlayer final : SoundPlayer {
    void playFile(const QString& path) override { played.append(path); }
    QStringList played;
};

struct Sheet {
    test::TempSettings temp;
    RecordingPlayer player;
    test::TestNotifier notifier;
    CSystemConfigSheet sheet { player, notifier };
    std::vector<bool> applied; // logChanged of each

    Sheet()
    {
        QObject::connect(&sheet, &CSystemConfigSheet::applied,
            [this](bool logChanged) { applied.push_back(logChanged); });
    }
    QWidget& show(int tab)
    {
        sheet.show(); // the shown page reads the store
        sheet.tabs().setCurrentIndex(tab);
        return sheet.page(tab);
    }
    void press(QDialogButtonBox::StandardButton which)
    {
        sheet.findChild<QDialogButtonBox*>()->button(which)->click();
    }
};

struct PageChange {
    int tab;
    std::function<void(QWidget&)> change;
    const char* section;
    const char* key;
    const char* expected;
};

const PageChange kChanges[] = {
    { 0, [](QWidget& p) { type(p, "User's E-mail address", "me@example.com"); }, "CONFIG", "Email",
        "me@example.com" },
    { 1,
        [](QWidget& p) {
            control<QRadioButton>(p, "CERN Proxy Access")->click();
            type(p, "Proxy Server Name", "proxy.example");
        },
        "FTP", "AccessType", "ProxyAccess" },
    { 2, [](QWidget& p) { control<QCheckBox>(p, "Overwrite Existing Files")->click(); }, "CONFIG",
        "Overwrite", "YES" },
    { 3, [](QWidget& p) { p.findChild<QComboBox*>()->setCurrentIndex(1); }, "LOG", "TimeFormat",
        "1" },
    { 4,
        [](QWidget& p) {
            for (const char* extension : { "txt", "htm" }) {
                type(p, "File Extension", extension);
                control<QPushButton>(p, "Add")->click();
            }
        },
        "CONFIG", "TextExtensions", "txt,htm," },
    { 5, [](QWidget& p) { control<QRadioButton>(p, "File")->click(); }, "SOUNDS", "TransferType",
        "FILE" },
    { 6,
        [](QWidget& p) {
            control<QCheckBox>(p, "Automatically Add Failed Transfers to Queue")->click();
        },
        "SCHEDULE", "ResendFail", "1" },
    { 7, [](QWidget& p) { control<QRadioButton>(p, "Vertically")->click(); }, "CONFIG",
        "ScreenSplit", "VERT" },
};

// One change on every page: OK stores each and applies once, Cancel stores nothing.
TEST(SystemConfigSheet, OkStoresEveryPageAndCancelNothing)
{
    for (const bool ok : { false, true }) {
        Sheet s;
        ASSERT_EQ(s.sheet.pageCount(), 8);
        for (const PageChange& c : kChanges)
            c.change(s.show(c.tab));
        s.press(ok ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel);
        EXPECT_TRUE(s.notifier.messages.isEmpty()) << s.notifier.messages.join(u'|').toStdString();
        EXPECT_FALSE(s.sheet.isVisible());
        for (const PageChange& c : kChanges) {
            EXPECT_EQ(storedText(c.section, c.key), QLatin1StringView(ok ? c.expected : "absent"))
                << c.key;
        }
        EXPECT_EQ(s.applied, ok ? std::vector<bool> { true } : std::vector<bool> {});
    }
}

// A refused page is shown with its message and keeps its keys unwritten; the sheet stays open.
// Which values each page refuses is the page's own rule.
TEST(SystemConfigSheet, RefusedPageStaysOpenWithItsMessage)
{
    Sheet s;
    QWidget& ftp = s.show(0);
    type(ftp, "User's E-mail address", "me@example.com");
    type(ftp, "Connection Time-Out (secs)", "0");
    s.show(7); // OK from another page
    s.press(QDialogButtonBox::Ok);
    EXPECT_EQ(s.notifier.messages, QStringList { "Please enter a number from 1 to 3600." });
    EXPECT_EQ(s.notifier.icons, QList<MessageIcon> { MessageIcon::Stop });
    EXPECT_TRUE(s.sheet.isVisible());
    EXPECT_EQ(s.sheet.tabs().currentIndex(), 0);
    EXPECT_EQ(storedText("CONFIG", "Email"), QStringLiteral("absent"));
    EXPECT_TRUE(s.applied.empty());
}

// Garbage in the store opens with the defaults; too many digits cannot be typed.
TEST(SystemConfigSheet, GarbageShowsDefaultsAndNumbersStayInRange)
{
    Sheet s;
    SettingsStore::writeText(QStringLiteral("FTP"), QStringLiteral("RecTo"), QStringLiteral("x"));
    SettingsStore::writeInt(QStringLiteral("LOG"), QStringLiteral("TimeFormat"), 42);
    SettingsStore::writeText(
        QStringLiteral("CONFIG"), QStringLiteral("ScreenSplit"), QStringLiteral("SIDEWAYS"));
    QWidget& ftp = s.show(0);
    EXPECT_EQ(edit(ftp, "Receive Time-Out (Data) (secs)")->text(), QStringLiteral("20"));
    EXPECT_EQ(s.show(3).findChild<QComboBox*>()->currentIndex(), 0);
    EXPECT_TRUE(control<QRadioButton>(s.show(7), "Horizontally")->isChecked());

    type(ftp, "User's E-mail address", "me@example.com");
    type(ftp, "Send Time-Out (Data) (secs)", "100000");
    s.press(QDialogButtonBox::Ok);
    EXPECT_TRUE(s.notifier.messages.isEmpty());
    EXPECT_LE(SettingsStore::get(ftp::kSendTo), 3600);
}

TEST(SystemConfigSheet, ExtensionListEmptiedByRemoveStoresEmptyText)
{
    Sheet s;
    SettingsStore::set(config::kTextExtensionsPage, QStringLiteral("txt,,htm,"));
    QWidget& page = s.show(4);
    auto* list = page.findChild<QListWidget*>();
    ASSERT_EQ(list->count(), 2);
    while (list->count() > 0) {
        list->setCurrentRow(0);
        control<QPushButton>(page, "Remove")->click();
    }
    s.press(QDialogButtonBox::Ok);
    EXPECT_EQ(storedText("CONFIG", "TextExtensions"), QString());
}

struct Stamps final : LogListener {
    void recordAdded(const LogRecord& record, bool) override { times.append(record.time); }
    QStringList times;
};

// Apply on the Log page reaches the log writer: the next record follows the new format.
TEST(SystemConfigSheet, LogPageAppliesToTheNextRecord)
{
    Sheet s;
    Stamps stamps;
    test::TestNotifier logNotifier;
    LogWriter writer(logNotifier, &stamps);
    QObject::connect(&s.sheet, &CSystemConfigSheet::applied, [&writer](bool logChanged) {
        if (logChanged)
            writer.reloadSettings();
    });
    const LogEvent event { ids::kLogFtpConnectionOk, {}, {}, {}, {}, {}, {}, false };
    writer.write(event);
    QWidget& page = s.show(3);
    page.findChild<QComboBox*>()->setCurrentIndex(1); // hh:mm:ss
    control<QCheckBox>(page, "Log To Screen")->click(); // the page shows it off on an empty store
    s.press(QDialogButtonBox::Apply);
    EXPECT_TRUE(s.sheet.isVisible());
    writer.write(event);
    ASSERT_EQ(stamps.times.size(), 2);
    EXPECT_EQ(stamps.times[0].size(), 5);
    EXPECT_EQ(stamps.times[1].size(), 8);
    EXPECT_FALSE(
        s.sheet.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Apply)->isEnabled());
}

// Test plays the typed file through the program's player; Clear empties the four events.
TEST(SystemConfigSheet, SoundsPageTestsAndClears)
{
    Sheet s;
    SettingsStore::set(sounds::kTransferFailPage, QStringLiteral("/old/fail.wav"));
    QWidget& page = s.show(5);
    type(page, "Connection Established", "/sounds/ok.wav");
    const auto tests = page.findChildren<QPushButton*>();
    for (QPushButton* button : tests) {
        if (button->text() == QLatin1StringView("Test"))
            button->click(); // only the two that hold a file play
    }
    EXPECT_EQ(s.player.played, QStringList({ "/sounds/ok.wav", "/old/fail.wav" }));
    control<QPushButton>(page, "Clear")->click();
    s.sheet.accept();
    for (const TextKey& key : { sounds::kConnectOkPage, sounds::kConnectFailPage,
             sounds::kTransferOkPage, sounds::kTransferFailPage })
        EXPECT_EQ(storedText(key.section, key.name), QString()) << key.name;
}

// Every page's Help finds its section of the built-in manual, whose anchors are its headings'.
TEST(SystemConfigSheet, EveryPageHasItsSectionInTheManual)
{
    Sheet s;
    CHelpWindow manual;
    EXPECT_FALSE(manual.goTo(QStringLiteral("no-such-section")));
    for (int i = 0; i < s.sheet.pageCount(); ++i)
        EXPECT_TRUE(manual.goTo(s.sheet.page(i).helpAnchor())) << i;
    for (const char* window : { "main-window", "log-view", "transfer-window", "system-config",
             "transfers-dock", "standard-ftp-screen", "remote-ftp-screen", "site-profiles",
             "file-list-screen", "links", "queue-window", "scheduler" })
        EXPECT_TRUE(manual.goTo(QLatin1StringView(window))) << window;
}

} // namespace
} // namespace zelto
