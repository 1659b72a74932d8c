#pragma once

#include "app/ui/FrameCommands.h"

#include <QString>

#include <array>

class QStackedWidget;
class QWidget;

namespace zelto {

class StoredSplitter;
struct FrameViews;

// The main frame's screens, by the command that chooses each.
enum class Screen {
    StandardFtp = cmd::kStandardFtp, // a remote site and the local disks
    RemoteFtp = cmd::kRemoteFtp, // two remote sites
    MultiplePut = cmd::kMultiplePut, // local files to many sites
};

// The panes of the three screens, built once from four named splitters: "Main\split1" holds the
// work panes of the screen shown over the log view; "Main\split2" to "Main\split4" hold the two
// work panes of the Standard FTP, Remote FTP and Multiple FTP Put screens. Changing the screen
// swaps the work panes and keeps every view as it is.
class FrameScreens final {
public:
    // Places the views and restores the stored sizes; the widget() belongs to `parent`.
    FrameScreens(const FrameViews& views, QWidget* parent);
    FrameScreens(const FrameScreens&) = delete;
    FrameScreens& operator=(const FrameScreens&) = delete;

    [[nodiscard]] QWidget* widget() const;
    [[nodiscard]] Screen current() const { return current_; }
    void show(Screen screen);

    // Work panes side by side (horizontal) or stacked (vertical), on every screen.
    void setSplit(Qt::Orientation orientation);
    void saveSizes() const;

    // The screen that a StartScreen word names; an empty or unknown word names the default.
    [[nodiscard]] static Screen fromWord(const QString& word);
    [[nodiscard]] static QString wordOf(Screen screen);

private:
    StoredSplitter* outer_;
    QStackedWidget* work_;
    std::array<StoredSplitter*, 3> screens_ {}; // in the order of Screen
    Screen current_ = Screen::MultiplePut;
};

} // namespace zelto
