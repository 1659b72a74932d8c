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
    if (cut) {
        parsed.kind = Kind::Unparsable;
        parsed.shown = parsed.shown.left(kShownOfCutLine) + QStringLiteral("...");
    }
    parsed.shown = visible(parsed.shown);
    return parsed;
}

} // namespace zelto
