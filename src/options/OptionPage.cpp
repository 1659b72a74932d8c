#include "OptionPage.h"

#include "platform/StringIds.h"
#include "settings/DataFolders.h"
#include "settings/SettingsStore.h"

#include <cstring>

namespace zelto {
namespace {

using namespace settings;

constexpr char kCernProxy[] = "ProxyAccess";

} // namespace

OptionPage::OptionPage(OptionPageKind kind) : kind_(kind)
{
    switch (kind) {
    case OptionPageKind::Ftp:
        for (const TextKey& key : { config::kEmail, ftp::kCachePage, ftp::kReload, ftp::kPassive })
            add(key);
        for (const IntKey& key : { ftp::kConnectTo, ftp::kRecTo, ftp::kSendTo, ftp::kRecToCtrl,
                 ftp::kSendToCtrl, ftp::kRetry })
            add(key);
        break;
    case OptionPageKind::Proxies:
        add(ftp::kAccessTypePage);
        add(ftp::kProxyName);
        add(ftp::kPort);
        add(ftp::kProxyPort);
        break;
    case OptionPageKind::System:
        for (const TextKey& key : { config::kDataDir, config::kDefaultDir, config::kProfilePath,
                 config::kConnectNet, config::kOverwrite, config::kDragDropSubDirs,
                 config::kFileCasingPut, config::kFileCasingGet, config::kTimeType })
            add(key);
        add(ftp::kReadBuffer);
        add(ftp::kWriteBuffer);
        break;
    case OptionPageKind::Log:
        for (const TextKey& key :
            { log::kToScreenPage, log::kToFilePage, log::kAppendLog, log::kFileName, log::kView })
            add(key);
        add(log::kTimeFormat);
        add(log::kDateFormat);
        break;
    case OptionPageKind::Ascii:
        add(config::kTextExtensionsPage);
        break;
    case OptionPageKind::Sounds:
        for (const TextKey& key : { sounds::kConnectOkPage, sounds::kConnectFailPage,
                 sounds::kTransferOkPage, sounds::kTransferFailPage, sounds::kTransferType })
            add(key);
        break;
    case OptionPageKind::Queue:
        add(schedule::kResendFail);
        add(schedule::kResendFreq);
        add(schedule::kResendFreqNum);
        add(schedule::kResendTimePage);
        add(schedule::kStartQueueProg);
        break;
    case OptionPageKind::Misc:
        for (const TextKey& key :
            { config::kScreenSplit, config::kDragDrop, config::kDragDropDirsMiscPage,
                config::kLocalDblClick, config::kRemoteDblClick, config::kFtpDirTreeMiscPage,
                config::kDeletePut, config::kDeleteGet, config::kRenameLongFileNames })
            add(key);
        break;
    }
}

void OptionPage::add(const TextKey& key)
{
    fields_.push_back({ key.section, key.name, QString::fromLatin1(key.fallback), false, {} });
}

void OptionPage::add(const IntKey& key)
{
    fields_.push_back({ key.section, key.name, QString::number(key.fallback), true, {} });
}

void OptionPage::read()
{
    for (Field& f : fields_) {
        const QString section = QLatin1StringView(f.section);
        const QString name = QLatin1StringView(f.name);
        f.value = f.isInt
            ? QString::number(SettingsStore::getInt(section, name, f.fallback.toInt()))
            : SettingsStore::getText(section, name, f.fallback);
    }
}

const OptionPage::Field* OptionPage::field(const char* name) const
{
    for (const Field& f : fields_) {
        if (std::strcmp(f.name, name) == 0)
            return &f;
    }
    return nullptr;
}

QString OptionPage::value(const char* name) const
{
    const Field* f = field(name);
    return f ? f->value : QString();
}

QString OptionPage::fallback(const char* name) const
{
    const Field* f = field(name);
    return f ? f->fallback : QString();
}

void OptionPage::setValue(const char* name, const QString& value)
{
    if (const Field* f = field(name))
        fields_[std::size_t(f - fields_.data())].value = value;
}

QString OptionPage::normalisedLogName(const QString& name)
{
    const qsizetype dot = name.indexOf(u'.', 1);
    return dot > 0 ? name.left(dot + 1) + QStringLiteral("log") : name + QStringLiteral(".log");
}

int OptionPage::refusal() const
{
    const auto empty = [this](const char* name) { return value(name).trimmed().isEmpty(); };
    switch (kind_) {
    case OptionPageKind::Ftp:
        return empty(config::kEmail.name) ? ids::kEmailRequired : 0;
    case OptionPageKind::Proxies:
        return value(ftp::kAccessTypePage.name) == QLatin1StringView(kCernProxy)
                && (empty(ftp::kProxyName.name) || empty(ftp::kProxyPort.name))
            ? ids::kCernProxyIncomplete
            : 0;
    case OptionPageKind::Log:
        return value(log::kToFilePage.name) == QLatin1StringView(kYes) && empty(log::kFileName.name)
            ? ids::kLogFileNameMissing
            : 0;
    case OptionPageKind::Queue:
        return value(schedule::kResendFreq.name)
                    == QLatin1StringView(schedule::kResendFreqByAttempts)
                && empty(schedule::kResendFreqNum.name)
            ? ids::kResendCountMissing
            : 0;
    default:
        return 0;
    }
}

int OptionPage::confirm()
{
    const int refused = refusal();
    if (refused != 0) {
        if (kind_ == OptionPageKind::Queue)
            write(schedule::kResendFreqNum.name);
        return refused;
    }
    if (kind_ == OptionPageKind::Log && value(log::kToFilePage.name) == QLatin1StringView(kYes))
        setValue(log::kFileName.name, normalisedLogName(value(log::kFileName.name)));
    write();
    return 0;
}

void OptionPage::write(const char* skipped) const
{
    for (const Field& f : fields_) {
        if (skipped && std::strcmp(f.name, skipped) == 0)
            continue;
        const QString section = QLatin1StringView(f.section);
        const QString name = QLatin1StringView(f.name);
        // A typed profile directory loses a trailing "Profiles" or gets its three folders made.
        if (std::strcmp(f.name, config::kProfilePath.name) == 0 && !f.value.isEmpty())
            DataFolders::storeTypedProfileDirectory(f.value);
        else if (f.isInt)
            SettingsStore::writeInt(section, name, f.value.trimmed().toInt()); // not a number: 0
        else
            SettingsStore::writeText(section, name, f.value);
    }
}

} // namespace zelto
