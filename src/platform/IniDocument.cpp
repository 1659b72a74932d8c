#include "platform/IniDocument.h"

#include <QIODevice>
#include <QSet>

#include <algorithm>
#include <utility>

namespace zelto {

namespace {

constexpr QByteArrayView kBom("\xEF\xBB\xBF");

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

QByteArrayView trimmed(QByteArrayView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin);
}

char foldAscii(char c)
{
    return (c >= 'A' && c <= 'Z') ? char(c - 'A' + 'a') : c;
}

// ASCII case folding on the UTF-8 bytes: a byte of a multi-byte character never equals an ASCII
// letter, so other characters are compared exactly.
bool sameName(QByteArrayView a, QByteArrayView b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
        return foldAscii(x) == foldAscii(y);
    });
}

// The key of a name in the section index: equal for names that sameName() matches.
QByteArray folded(QByteArrayView name)
{
    QByteArray key(name.data(), name.size());
    std::transform(key.begin(), key.end(), key.begin(), foldAscii);
    return key;
}

// The name of a "[name]" line: up to the last "]", so that a name may itself hold brackets.
std::optional<QByteArrayView> headerName(QByteArrayView line)
{
    const QByteArrayView text = trimmed(line);
    if (!text.startsWith('['))
        return std::nullopt;
    const qsizetype close = text.lastIndexOf(']');
    if (close < 0)
        return std::nullopt;
    return trimmed(text.sliced(1, close - 1));
}

struct KeyLine {
    QByteArrayView key;
    QByteArrayView value;
};

// A "key=value" line; comments, blank lines and lines without "=" are not keys.
std::optional<KeyLine> keyLine(QByteArrayView line)
{
    const QByteArrayView text = trimmed(line);
    if (text.isEmpty() || text.startsWith(';'))
        return std::nullopt;
    const qsizetype equals = text.indexOf('=');
    if (equals < 0)
        return std::nullopt;
    return KeyLine { trimmed(text.first(equals)), trimmed(text.sliced(equals + 1)) };
}

// Calls `visit` with each line of `body` (without its line break) until it returns false.
template <typename Visit> void forEachLine(QByteArrayView body, Visit visit)
{
    qsizetype pos = 0;
    while (pos < body.size()) {
        const qsizetype lineBreak = body.indexOf('\n', pos);
        const qsizetype end = lineBreak < 0 ? body.size() : lineBreak;
        if (!visit(body.sliced(pos, end - pos)))
            return;
        pos = end + 1;
    }
}

// The same over a section's lines, whether still as read or already edited.
template <typename SectionT, typename Visit> void forEachLine(const SectionT& section, Visit visit)
{
    if (!section.edited) {
        forEachLine(section.body, visit);
        return;
    }
    for (const QByteArrayView line : section.lines) {
        if (!visit(line))
            return;
    }
}

// A value may not break its line: that would let it add keys or sections to the file.
QByteArray singleLine(const QString& text)
{
    QByteArray bytes = text.toUtf8();
    std::replace_if(
        bytes.begin(), bytes.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return bytes;
}

// Section and key names as stored and as looked up, so that what is written is found again.
QByteArray nameBytes(const QString& name)
{
    return trimmed(singleLine(name)).toByteArray();
}

} // namespace

IniDocument::IniDocument() : IniDocument(QByteArray())
{
}

IniDocument::IniDocument(QByteArray bytes) : source_(std::move(bytes))
{
    QByteArrayView text(source_);
    if (text.startsWith(kBom)) {
        bom_ = true;
        text = text.sliced(kBom.size());
    }
    const qsizetype firstBreak = text.indexOf('\n');
    crlf_ = firstBreak > 0 && text[firstBreak - 1] == '\r';

    qsizetype sectionBegin = 0;
    qsizetype bodyBegin = 0;
    Section current;
    const auto close = [&](qsizetype end) {
        current.raw = text.sliced(sectionBegin, end - sectionBegin);
        current.body = text.sliced(bodyBegin, end - bodyBegin);
        sections_.push_back(std::move(current));
    };
    // Only a line whose first non-blank character is "[" can be a header, and "[" is rare
    // elsewhere: jumping from one "[" to the next is much faster than visiting every line.
    qsizetype pos = 0;
    while (true) {
        const qsizetype bracket = text.indexOf('[', pos);
        if (bracket < 0)
            break;
        qsizetype lineBegin = bracket;
        while (lineBegin > 0 && isBlank(text[lineBegin - 1]))
            --lineBegin;
        if (lineBegin > 0 && text[lineBegin - 1] != '\n') {
            pos = bracket + 1;
            continue;
        }
        const qsizetype lineBreak = text.indexOf('\n', bracket);
        const qsizetype end = lineBreak < 0 ? text.size() : lineBreak;
        const qsizetype next = lineBreak < 0 ? text.size() : lineBreak + 1;
        const QByteArrayView line = text.sliced(lineBegin, end - lineBegin);
        if (const auto name = headerName(line)) {
            close(lineBegin);
            current = Section();
            current.headed = true;
            current.name = *name;
            current.header = line;
            sectionBegin = lineBegin;
            bodyBegin = next;
        }
        pos = next;
    }
    close(text.size());
}

QByteArray IniDocument::toBytes() const
{
    QByteArray out;
    out.reserve(source_.size() + 256);
    forEachPiece([&](QByteArrayView piece) { out.append(piece); });
    return out;
}

bool IniDocument::writeTo(QIODevice& device) const
{
    // Small pieces are gathered, so that an edited section is not one write call per line, and
    // written out when enough came together, so that a file of edited sections is not copied.
    constexpr qsizetype kLargePiece = 4096;
    constexpr qsizetype kGathered = 64 * 1024;
    QByteArray gathered;
    gathered.reserve(kGathered + kLargePiece);
    bool written = true;
    const auto put = [&](QByteArrayView bytes) {
        written = written
            && (bytes.isEmpty() || device.write(bytes.data(), bytes.size()) == bytes.size());
    };
    const auto putGathered = [&] {
        put(gathered);
        gathered.clear();
    };
    forEachPiece([&](QByteArrayView piece) {
        if (piece.size() >= kLargePiece) {
            putGathered();
            put(piece);
            return;
        }
        gathered.append(piece);
        if (gathered.size() >= kGathered)
            putGathered();
    });
    put(gathered);
    return written;
}

template <typename Sink> void IniDocument::forEachPiece(Sink sink) const
{
    // Untouched sections that follow each other in the file are one piece.
    QByteArrayView run;
    const auto endRun = [&] {
        if (run.isEmpty())
            return;
        sink(run);
        // A file cut short may end inside a line; what follows must start on a line of its own.
        if (!run.endsWith('\n'))
            sink("\n");
        run = {};
    };
    if (bom_)
        sink(kBom);
    for (const Section& section : sections_) {
        if (section.edited || section.renamed) {
            endRun();
            if (section.headed) {
                sink(section.header);
                sink("\n");
            }
        }
        if (!section.edited) {
            const QByteArrayView piece = section.renamed ? section.body : section.raw;
            if (!run.isEmpty() && run.data() + run.size() == piece.data()) {
                run = QByteArrayView(run.data(), run.size() + piece.size());
            } else {
                endRun();
                run = piece;
            }
            continue;
        }
        for (const QByteArrayView line : section.lines) {
            sink(line);
            sink("\n");
        }
    }
    endRun();
}

std::optional<QString> IniDocument::value(const QString& section, const QString& key) const
{
    return values(section, { key }).front();
}

std::vector<std::optional<QString>> IniDocument::values(
    const QString& section, const QStringList& keys) const
{
    std::vector<std::optional<QString>> result(std::size_t(keys.size()));
    const Section* found = find(nameBytes(section));
    if (!found)
        return result;
    std::vector<QByteArray> wanted;
    for (const QString& key : keys)
        wanted.push_back(nameBytes(key));
    qsizetype missing = keys.size();
    forEachLine(*found, [&](QByteArrayView line) {
        const auto entry = keyLine(line);
        if (!entry)
            return true;
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            if (result[i] || !sameName(entry->key, wanted[i]))
                continue;
            QByteArrayView text = entry->value;
            // The platform's reads drop one pair of double quotes around a value; so do we.
            if (text.size() >= 2 && text.startsWith('"') && text.endsWith('"'))
                text = text.sliced(1, text.size() - 2);
            result[i] = QString::fromUtf8(text);
            --missing;
        }
        return missing > 0;
    });
    return result;
}

void IniDocument::setValue(const QString& section, const QString& key, const QString& value)
{
    const QByteArray keyText = nameBytes(key);
    const QByteArray valueText = singleLine(value);
    std::vector<QByteArrayView>& lines = editableLines(findOrAdd(nameBytes(section)));
    for (QByteArrayView& line : lines) {
        const auto entry = keyLine(line);
        if (entry && sameName(entry->key, keyText)) {
            line = store(entry->key.toByteArray() + '=' + valueText);
            return;
        }
    }
    const auto lastText = std::find_if(
        lines.rbegin(), lines.rend(), [](QByteArrayView line) { return !trimmed(line).isEmpty(); });
    lines.insert(lastText.base(), store(keyText + '=' + valueText));
}

bool IniDocument::removeKey(const QString& section, const QString& key)
{
    Section* found = find(nameBytes(section));
    if (!found)
        return false;
    const QByteArray wanted = nameBytes(key);
    const auto isKey = [&](QByteArrayView line) {
        const auto entry = keyLine(line);
        return entry && sameName(entry->key, wanted);
    };
    bool present = false;
    forEachLine(*found, [&](QByteArrayView line) {
        present = isKey(line);
        return !present;
    });
    if (!present)
        return false;
    std::erase_if(editableLines(*found), isKey);
    return true;
}

bool IniDocument::hasSection(const QString& section) const
{
    return find(nameBytes(section)) != nullptr;
}

QStringList IniDocument::sectionNames() const
{
    QStringList names;
    for (const Section& section : sections_) {
        if (section.headed)
            names.append(QString::fromUtf8(section.name));
    }
    return names;
}

QStringList IniDocument::sectionLines(const QString& section) const
{
    QStringList result;
    const Section* found = find(nameBytes(section));
    if (!found)
        return result;
    const auto collect = [&](QByteArrayView line) {
        const QByteArrayView text = trimmed(line);
        if (text.isEmpty() || text.startsWith(';'))
            return true;
        if (const auto entry = keyLine(text))
            result.append(QString::fromUtf8(entry->key) + u'=' + QString::fromUtf8(entry->value));
        else
            result.append(QString::fromUtf8(text));
        return true;
    };
    forEachLine(*found, collect);
    return result;
}

void IniDocument::replaceSection(const QString& section, const QStringList& lines)
{
    Section& target = findOrAdd(nameBytes(section));
    target.edited = true;
    target.lines.clear();
    for (const QString& line : lines) {
        if (line.contains(u'='))
            target.lines.push_back(store(singleLine(line)));
    }
}

qsizetype IniDocument::sectionSize(const QString& section) const
{
    const Section* found = find(nameBytes(section));
    if (!found)
        return 0;
    if (!found->edited)
        return found->body.size();
    qsizetype size = 0;
    for (const QByteArrayView line : found->lines)
        size += line.size() + 1;
    return size;
}

bool IniDocument::renameSection(const QString& from, const QString& to)
{
    const QByteArray name = nameBytes(to);
    const std::size_t index = indexOf(nameBytes(from));
    if (index == kNone || indexOf(name) != kNone)
        return false;
    Section& section = sections_[index];
    index_.remove(folded(section.name));
    const QByteArrayView header = store('[' + name + ']');
    section.name = header.sliced(1, name.size());
    section.header = header;
    section.renamed = true;
    if (duplicates_) {
        // A later section of the old name is now the first of it.
        index_.clear();
        indexed_ = false;
    } else {
        index_.insert(folded(section.name), index);
    }
    return true;
}

bool IniDocument::removeSection(const QString& section)
{
    return removeSections({ section }) > 0;
}

qsizetype IniDocument::removeSections(const QStringList& sections)
{
    QSet<QByteArray> wanted;
    for (const QString& section : sections)
        wanted.insert(folded(nameBytes(section)));
    const auto removed = qsizetype(std::erase_if(
        sections_, [&](const Section& s) { return s.headed && wanted.contains(folded(s.name)); }));
    if (removed > 0) {
        // The sections after them moved up.
        index_.clear();
        indexed_ = false;
    }
    return removed;
}

std::size_t IniDocument::indexOf(QByteArrayView name) const
{
    if (!indexed_) {
        index_.reserve(qsizetype(sections_.size()));
        duplicates_ = false;
        for (std::size_t i = 0; i < sections_.size(); ++i) {
            if (!sections_[i].headed)
                continue;
            QByteArray key = folded(sections_[i].name);
            if (index_.contains(key)) // the first of a name is the one read and changed
                duplicates_ = true;
            else
                index_.insert(std::move(key), i);
        }
        indexed_ = true;
    }
    return index_.value(folded(name), kNone);
}

const IniDocument::Section* IniDocument::find(QByteArrayView name) const
{
    const std::size_t index = indexOf(name);
    return index == kNone ? nullptr : &sections_[index];
}

IniDocument::Section* IniDocument::find(QByteArrayView name)
{
    return const_cast<Section*>(std::as_const(*this).find(name));
}

IniDocument::Section& IniDocument::findOrAdd(QByteArrayView name)
{
    if (Section* found = find(name))
        return *found;
    const QByteArrayView header = store('[' + name.toByteArray() + ']');
    Section& added = sections_.emplace_back();
    added.headed = true;
    added.name = header.sliced(1, name.size());
    added.header = header;
    added.edited = true;
    // find() above built the index, and found no section of this name.
    index_.insert(folded(added.name), sections_.size() - 1);
    return added;
}

std::vector<QByteArrayView>& IniDocument::editableLines(Section& section)
{
    if (!section.edited) {
        forEachLine(section.body, [&](QByteArrayView line) {
            section.lines.push_back(line);
            return true;
        });
        section.edited = true;
    }
    return section.lines;
}

QByteArrayView IniDocument::store(QByteArray line)
{
    if (crlf_)
        line.append('\r');
    constexpr std::size_t kChunk = 64 * 1024;
    const auto size = std::size_t(line.size());
    if (added_.empty() || added_.back().capacity() - added_.back().size() < size)
        added_.emplace_back().reserve(std::max(kChunk, size));
    std::string& chunk = added_.back();
    const std::size_t at = chunk.size();
    chunk.append(line.constData(), size);
    return QByteArrayView(chunk.data() + at, qsizetype(size));
}

} // namespace zelto
