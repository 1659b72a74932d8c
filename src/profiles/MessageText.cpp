#include "MessageText.h"

#include "platform/StringTable.h"

namespace zelto {

QString messageText(int id, std::initializer_list<QString> values)
{
    const QString pattern = StringTable::text(id);
    QString out;
    auto next = values.begin();
    qsizetype from = 0;
    while (next != values.end()) {
        const qsizetype at = pattern.indexOf(QStringLiteral("%s"), from);
        if (at < 0)
            break;
        out += QStringView(pattern).sliced(from, at - from);
        out += *next++;
        from = at + 2;
    }
    out += QStringView(pattern).sliced(from);
    return out;
}

} // namespace zelto
