#include "ListingReader.h"

namespace zelto {

ListingReader::ListingReader(ListingParser parser, QString path)
    : parser_(std::move(parser)), path_(std::move(path))
{
}

bool ListingReader::take(QByteArrayView data)
{
    received_ += data.size();
    if (received_ > RemoteListing::kMaxBytes) {
        refusal_ = QStringLiteral("The listing of %1 passed %2 MiB and was refused.")
                       .arg(path_)
                       .arg(RemoteListing::kMaxBytes / (1024 * 1024));
        return false;
    }
    for (qsizetype end = data.indexOf('\n'); end >= 0; end = data.indexOf('\n')) {
        if (partial_.isEmpty()) {
            addLine(data.first(end));
        } else {
            partial_.append(data.first(end));
            addLine(partial_);
            partial_.clear();
        }
        data = data.sliced(end + 1);
    }
    partial_.append(data);
    if (listing_.size() > RemoteListing::kMaxEntries) {
        refusal_ = QStringLiteral("The listing of %1 passed %2 entries and was refused.")
                       .arg(path_)
                       .arg(RemoteListing::kMaxEntries);
        return false;
    }
    return true;
}

RemoteListing ListingReader::finish()
{
    addLine(partial_);
    partial_.clear();
    return std::move(listing_);
}

void ListingReader::addLine(QByteArrayView line)
{
    if (auto entry = parser_.parse(line))
        listing_.add(std::move(*entry));
}

} // namespace zelto
