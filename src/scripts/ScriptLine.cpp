#include "ScriptLine.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace zelto {
namespace {

struct Keyword {
    const char* name;
    ScriptVerb verb;
    int pattern; // words the command's "%s" pattern reads, the keyword included
    int required; // fewest words that make the line whole
};

// In the order of the tests. "close" checks no count: a line without a name names no connection.
constexpr Keyword kKeywords[] = {
    { "open", ScriptVerb::Open, 7, 6 },
    { "get", ScriptVerb::Get, 3, 3 },
    { "send", ScriptVerb::Send, 4, 4 },
    { "put", ScriptVerb::Put, 3, 3 },
    { "close", ScriptVerb::Close, 2, 0 },
    { "cd", ScriptVerb::Cd, 3, 3 },
    { "lcd", ScriptVerb::Lcd, 2, 2 },
    { "mkdir", ScriptVerb::Mkdir, 3, 3 },
    { "remove", ScriptVerb::Remove, 3, 3 },
    { "rmdir", ScriptVerb::Rmdir, 3, 3 },
    { "rename", ScriptVerb::Rename, 4, 4 },
    { "binary", ScriptVerb::Binary, 2, 2 },
    { "ascii", ScriptVerb::Ascii, 2, 2 },
};

// The word of "open" that holds the password.
constexpr qsizetype kPasswordWord = 4;

// White space as "%s" knows it in the C locale.
bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\v' || c == u'\f' || c == u'\r';
}

struct Span {
    qsizetype start;
    qsizetype length;
};

// The first `most` words of `line`.
std::vector<Span> wordsOf(const QString& line, int most)
{
    std::vector<Span> words;
    qsizetype at = 0;
    while (int(words.size()) < most) {
        while (at < line.size() && isBlank(line[at]))
            ++at;
        if (at == line.size())
            break;
        const qsizetype start = at;
        while (at < line.size() && !isBlank(line[at]))
            ++at;
        words.push_back({ start, at - start });
    }
    return words;
}

// Edits (insertions, deletions, changes) between two short words, case ignored.
int editDistance(QStringView a, QStringView b)
{
    std::vector<int> row(std::size_t(b.size()) + 1);
    for (std::size_t j = 0; j < row.size(); ++j)
        row[j] = int(j);
    for (qsizetype i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = int(i);
        for (qsizetype j = 1; j <= b.size(); ++j) {
            const int above = row[std::size_t(j)];
            const bool same = a[i - 1].toLower() == b[j - 1].toLower();
            row[std::size_t(j)]
                = std::min({ above + 1, row[std::size_t(j - 1)] + 1, diagonal + (same ? 0 : 1) });
            diagonal = above;
        }
    }
    return row.back();
}

// A line that was meant as "open" but is mistyped ("opn", "oepn") still has its password where
// an open line has it: that word is hidden too, wherever the line is shown.
bool looksLikeOpen(const QString& text, const std::vector<Span>& spans)
{
    constexpr int kTypos = 2;
    return qsizetype(spans.size()) > kPasswordWord
        && editDistance(QStringView(text).mid(spans.front().start, spans.front().length), u"open")
        <= kTypos;
}

// Control characters would garble a report line; a binary file is full of them.
QString visible(QString text)
{
    for (QChar& c : text) {
        if ((c.unicode() < 0x20 && c != u'\t') || c.unicode() == 0x7f)
            c = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace

ScriptLine ScriptLine::parse(const QString& line, bool cut)
{
    qsizetype start = 0;
    while (start < line.size() && isBlank(line[start]))
        ++start;
    const QString text = line.mid(start);

    ScriptLine parsed;
    parsed.shown = text;
    if (text.isEmpty() || text.startsWith(u'/'))
        return parsed;

    const Keyword* keyword
        = std::find_if(std::begin(kKeywords), std::end(kKeywords), [&](const Keyword& k) {
              return text.startsWith(QLatin1StringView(k.name), Qt::CaseInsensitive);
          });
    if (keyword != std::end(kKeywords)) {
        parsed.verb = keyword->verb;
        const auto spans = wordsOf(text, keyword->pattern);
        for (const Span& span : spans)
            parsed.words.append(text.mid(span.start, span.length));
        if (keyword->verb == ScriptVerb::Open && qsizetype(spans.size()) > kPasswordWord) {
            const Span& password = spans[kPasswordWord];
            parsed.shown.replace(password.start, password.length, QStringLiteral("*****"));
        }
        parsed.kind = int(spans.size()) >= keyword->required ? Kind::Command : Kind::Malformed;
    } else {
        parsed.kind = Kind::Unparsable;
    }
    if (keyword == std::end(kKeywords)) {
        const auto spans = wordsOf(text, kPasswordWord + 1);
        if (looksLikeOpen(text, spans)) {
            const Span& password = spans[kPasswordWord];
            parsed.shown.replace(password.start, password.length, QStringLiteral("*****"));
        }
    }
    if (cut) {
        parsed.kind = Kind::Unparsable;
        parsed.shown = parsed.shown.left(kShownOfCutLine) + QStringLiteral("...");
    }
    parsed.shown = visible(parsed.shown);
    return parsed;
}

} // namespace zelto
