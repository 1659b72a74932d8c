#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <QStringList>

#include <deque>
#include <optional>
#include <string>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QIODevice)

namespace zelto {

// An initialisation (.ini) file in memory: "[section]" headers and "key=value" lines, in file
// order. Sections and keys are matched with ASCII case folding (other characters must match
// exactly); when a name occurs twice the first occurrence is the one read and changed. Lines before
// the first header, comments (";"), blank lines and lines that are neither header nor "key=value"
// are never matched, and are written back byte for byte unless their section is replaced or
// removed.
//
// Sections are parsed lazily: only header lines are examined when the file is read, and untouched
// sections are written back as the bytes they came from, so that one change to a large file costs
// little more than copying it.
class IniDocument final {
public:
    IniDocument();
    explicit IniDocument(QByteArray bytes);
    IniDocument(IniDocument&&) noexcept = default;
    IniDocument& operator=(IniDocument&&) noexcept = default;
    // The sections hold views into the document's own buffers.
    IniDocument(const IniDocument&) = delete;
    IniDocument& operator=(const IniDocument&) = delete;

    [[nodiscard]] QByteArray toBytes() const;
    // Writes the same bytes as toBytes() without building them in memory first: untouched parts
    // of a large file go straight from the buffer they were read into. False on a short write.
    [[nodiscard]] bool writeTo(QIODevice& device) const;

    // The value of the key, trimmed of surrounding blanks and of one pair of surrounding double
    // quotes (as the platform's private-profile reads do), or nothing when the section or key is
    // missing. "key=" has the empty value.
    [[nodiscard]] std::optional<QString> value(const QString& section, const QString& key) const;
    // The values of several keys of one section, read as value() reads each, in one pass over
    // the section's lines.
    [[nodiscard]] std::vector<std::optional<QString>> values(
        const QString& section, const QStringList& keys) const;
    // Changes the first line of the key in place, or adds "key=value" after the last non-blank line
    // of the section, or adds the section at the end of the file. Line breaks in any of the three
    // texts become spaces, so that a value can never add lines or sections to the file.
    void setValue(const QString& section, const QString& key, const QString& value);
    // Removes every line of the key from the section; returns whether there was one.
    bool removeKey(const QString& section, const QString& key);

    [[nodiscard]] bool hasSection(const QString& section) const;
    [[nodiscard]] QStringList sectionNames() const;
    // The section's lines other than blanks and comments: "key=value" trimmed around the key and
    // the value (quotes kept), other lines trimmed. Empty when the section is missing.
    [[nodiscard]] QStringList sectionLines(const QString& section) const;
    // Replaces everything below the section's header with `lines`, adding the section when missing.
    // As with the platform's section writes, only lines holding "=" are kept.
    void replaceSection(const QString& section, const QStringList& lines);
    // The size in bytes of the section's lines, line breaks included; 0 when it is missing.
    [[nodiscard]] qsizetype sectionSize(const QString& section) const;
    // Gives the first section named `from` the name `to`, in its place and with its lines as they
    // stand, so that moving many sections costs no copies of their lines. False, changing nothing,
    // when there is no section `from` or one named `to` exists already.
    bool renameSection(const QString& from, const QString& to);
    // Removes every section of that name, header and lines; returns whether there was one.
    bool removeSection(const QString& section);
    // The same for many sections in one pass over the file; returns how many were removed.
    qsizetype removeSections(const QStringList& sections);

private:
    struct Section {
        bool headed = false; // false only for the lines before the first header
        QByteArrayView name; // between the brackets, trimmed
        QByteArrayView raw; // header and body as read, while the body is untouched
        QByteArrayView header; // the header line without its line break
        QByteArrayView body; // the lines below the header as read
        bool edited = false;
        bool renamed = false; // `header` is a new one; the body may still be untouched
        std::vector<QByteArrayView> lines; // the body lines once edited, without line breaks
    };

    // Calls `sink` with the file's bytes in order, in as few pieces as it can.
    template <typename Sink> void forEachPiece(Sink sink) const;
    [[nodiscard]] std::size_t indexOf(QByteArrayView name) const;
    [[nodiscard]] const Section* find(QByteArrayView name) const;
    [[nodiscard]] Section* find(QByteArrayView name);
    Section& findOrAdd(QByteArrayView name);
    std::vector<QByteArrayView>& editableLines(Section& section);
    // Keeps a new line for the document's lifetime, with a carriage return in a CRLF file.
    QByteArrayView store(QByteArray line);

    QByteArray source_;
    // The text of new and changed lines, which sections view: large chunks filled one after the
    // other and never grown past their capacity, so that a line costs no more than its bytes and
    // the views stay valid.
    std::deque<std::string> added_;
    // The first holds the lines before the first header. A deque, since a large file has thousands
    // of sections and a vector would copy them all each time it grows.
    std::deque<Section> sections_;
    static constexpr std::size_t kNone = std::size_t(-1);
    // Folded section name -> index of its first section, built at the first lookup and dropped
    // by a removal: a queue of ten thousand items is looked up section by section.
    mutable QHash<QByteArray, std::size_t> index_;
    mutable bool indexed_ = false;
    mutable bool duplicates_ = false; // some name names two sections
    bool bom_ = false;
    bool crlf_ = false;
};

} // namespace zelto
