#pragma once

#include "profiles/ProfileForm.h"

#include <QWidget>

#include <stop_token>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zelto {

class Notifier;
class ProfileEvents;
class WorkerThreads;

// The edit form of a site profile beside the profile list: its name and six values, "Anonymous
// Login", OK and Cancel, and "Test connection", which logs in with the values shown on a worker
// and says in the form whether the login and the remote folder worked. With nothing being made
// or edited the fields are off and the form says how to start.
class CProfDialog final : public QWidget {
    Q_OBJECT
public:
    CProfDialog(Notifier& notifier, ProfileEvents& events, WorkerThreads& threads,
        QWidget* parent = nullptr);
    ~CProfDialog() override;

    [[nodiscard]] ProfileForm::Mode mode() const { return form_.mode(); }
    // Where OK saves: the folder chosen in the tree.
    void setFolder(const QString& folder);
    void load(const QString& folder, const QString& fileName);
    // The result of the last "Test connection", as the form shows it.
    [[nodiscard]] QString testResult() const;
    [[nodiscard]] bool testing() const { return testing_; }

    [[nodiscard]] QLineEdit* nameField() const { return name_; }
    [[nodiscard]] QLineEdit* hostField() const { return host_; }
    [[nodiscard]] QLineEdit* userField() const { return user_; }
    [[nodiscard]] QLineEdit* passwordField() const { return password_; }
    [[nodiscard]] QLineEdit* remotePathField() const { return remotePath_; }
    [[nodiscard]] QLineEdit* descriptionField() const { return description_; }
    [[nodiscard]] QLineEdit* portField() const { return port_; }
    [[nodiscard]] QCheckBox* anonymousBox() const { return anonymous_; }

public Q_SLOTS:
    void newSite();
    void ok();
    void cancel();
    void testConnection();

Q_SIGNALS:
    // A profile was written: the list shows it.
    void saved(const QString& folder, const QString& file);

private:
    void takeTyped();
    void show(const ProfileFormValues& values);
    void updateState();
    void showTestResult(const QString& text);

    Notifier& notifier_;
    ProfileEvents& events_;
    WorkerThreads& threads_;
    ProfileForm form_;
    QString folder_;
    QLineEdit* name_;
    QLineEdit* host_;
    QLineEdit* user_;
    QLineEdit* password_;
    QLineEdit* remotePath_;
    QLineEdit* description_;
    QLineEdit* port_;
    QCheckBox* anonymous_;
    QPushButton* ok_;
    QPushButton* cancel_;
    QPushButton* test_;
    QLabel* hint_;
    QLabel* testResult_;
    bool testing_ = false;
    std::stop_source testStop_;
};

} // namespace zelto
