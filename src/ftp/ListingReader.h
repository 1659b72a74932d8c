#pragma once

#include "ftp/ListingParser.h"
#include "ftp/RemoteListing.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace zelto {

// Takes a listing reply as it arrives, a line at a time, and stops it at RemoteListing's bounds.
class ListingReader final {
public:
    // `path` names the folder in the refusal.
    ListingReader(ListingParser parser, QString path);

    // The next bytes of the reply; false once the reply has passed a bound (see refusal()).
    [[nodiscard]] bool take(QByteArrayView data);
    // Why the reply was refused; empty while within its bounds.
    [[nodiscard]] const QString& refusal() const { return refusal_; }
    // The listing, with the last line even when no line end came after it.
    [[nodiscard]] RemoteListing finish();

private:
    void addLine(QByteArrayView line);

    ListingParser parser_;
    QString path_;
    RemoteListing listing_;
    QByteArray partial_; // the start of a line whose end has not arrived yet
    qint64 received_ = 0;
    QString refusal_;
};

} // namespace zelto
