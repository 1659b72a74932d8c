#pragma once

#include <QMainWindow>

namespace zelto {

// The main window of an interactive run.
class CMainFrame final : public QMainWindow {
    Q_OBJECT
public:
    explicit CMainFrame(QWidget* parent = nullptr);
};

} // namespace zelto
