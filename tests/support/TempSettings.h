#pragma once

#include <QString>
#include <QTemporaryDir>

namespace zelto::test {

// Points the settings store and the application data folder at a fresh temporary folder for the
// lifetime of the object, so that no test ever touches the user's own settings or data.
class TempSettings final {
public:
    TempSettings();
    ~TempSettings();
    TempSettings(const TempSettings&) = delete;
    TempSettings& operator=(const TempSettings&) = delete;

    [[nodiscard]] QString root() const { return dir_.path(); }
    // The settings file of the store (the native format's file on this platform).
    [[nodiscard]] QString settingsFile() const;
    // The application data folder as the program resolves it under this root.
    [[nodiscard]] QString appDataDir() const;

private:
    [[nodiscard]] QString configHome() const { return root() + QStringLiteral("/config"); }
    [[nodiscard]] QString dataHome() const { return root() + QStringLiteral("/data"); }

    QTemporaryDir dir_;
    QByteArray oldConfigHome_;
    QByteArray oldDataHome_;
};

} // namespace zelto::test
