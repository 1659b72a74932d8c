#include "RemoteEntry.h"

#include <algorithm>

namespace zelto {

bool RemoteEntry::isPlainName(const QString& name)
{
    if (name.isEmpty() || name == u"." || name == u"..")
        return false;
    return std::none_of(name.begin(), name.end(), [](QChar c) {
        return c == u'/' || c == u'\\' || c.unicode() < 0x20 || c.unicode() == 0x7f;
    });
}

} // namespace zelto
