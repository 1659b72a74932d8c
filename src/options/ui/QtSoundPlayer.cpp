#include "QtSoundPlayer.h"

#include <QAudioDevice>
#include <QFileInfo>
#include <QMediaDevices>
#include <QMetaObject>
#include <QUrl>

namespace zelto {

void QtSoundPlayer::playFile(const QString& path)
{
    // Runs at once on the player's own thread, queued from any other.
    QMetaObject::invokeMethod(&effect_, [this, path] { start(path); });
}

void QtSoundPlayer::start(const QString& path)
{
    // A new request cuts off the sound still playing, even when it brings nothing to play.
    effect_.stop();
    const QFileInfo file(path);
    if (!file.isFile() || !file.isReadable() || QMediaDevices::audioOutputs().isEmpty())
        return;
    effect_.setSource(QUrl::fromLocalFile(file.absoluteFilePath()));
    // Plays as soon as the file is loaded; a file that does not decode ends in an error status.
    effect_.play();
}

} // namespace zelto
