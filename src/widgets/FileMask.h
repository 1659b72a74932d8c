#pragma once

#include <QRegularExpression>
#include <QString>

namespace zelto {

// A file-name mask as the user types it ("*.txt", "report?.doc"): matched against the whole name
// without regard to letter case, as the sites' own listings and the local disks may differ in
// case. An empty mask matches every name.
class FileMask final {
public:
    explicit FileMask(const QString& mask);

    [[nodiscard]] bool matches(const QString& name) const;

private:
    QRegularExpression pattern_;
};

} // namespace zelto
