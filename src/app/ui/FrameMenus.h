#pragma once

#include <QHash>
#include <QList>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;
class QToolBar;

namespace zelto {

// The main frame's commands: one action per command id, with its text, access key, shortcut and
// icon, shown in the menu bar, the tool bar and the tray menu. The commands whose windows are not
// built yet are there, disabled. Behaviour is the frame's.
class FrameMenus final {
public:
    // Fills the frame's menu bar; `multiplePut` and `standardFtp` (FrameViews) join the FTP menu.
    FrameMenus(
        QMainWindow& frame, const QList<QAction*>& multiplePut, const QList<QAction*>& standardFtp);
    FrameMenus(const FrameMenus&) = delete;
    FrameMenus& operator=(const FrameMenus&) = delete;

    [[nodiscard]] QAction* command(int id) const { return commands_.value(id); }
    // The exclusive groups, whose actions carry their command id as data.
    [[nodiscard]] QActionGroup* screens() const { return screens_; }
    [[nodiscard]] QActionGroup* transferModes() const { return transferModes_; }
    [[nodiscard]] QActionGroup* logFilters() const { return logFilters_; }
    [[nodiscard]] QMenu* trayMenu() const { return trayMenu_; }
    [[nodiscard]] QMenu* viewMenu() const { return viewMenu_; }

    void fillToolBar(QToolBar& bar);
    // The Multiple FTP Put screen's own commands show only with that screen.
    void showMultiplePut(bool shown);
    // The bars' switches, for the menu that a right click on the bars opens.
    [[nodiscard]] QList<QAction*> barSwitches() const;

private:
    QAction* add(int id, const QString& text);
    QActionGroup* radioGroup(std::initializer_list<int> ids);

    QMainWindow& frame_;
    QList<QAction*> multiplePut_;
    QAction* multiplePutSeparator_ = nullptr;
    QHash<int, QAction*> commands_;
    QActionGroup* screens_ = nullptr;
    QActionGroup* transferModes_ = nullptr;
    QActionGroup* logFilters_ = nullptr;
    QMenu* trayMenu_ = nullptr;
    QMenu* viewMenu_ = nullptr;
};

} // namespace zelto
