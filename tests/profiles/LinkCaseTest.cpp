// Links follow a renamed profile folder on a case-sensitive file system: the old folder is found
// whatever its case in the link, the new one is written as the user typed it, and the rest of
// each path keeps its own case, so that every site still names a file on disk.

#include "ProfilesFixture.h"
#include "profiles/LinkFile.h"

namespace zelto::test {
namespace {

class LinkCaseTest : public ProfilesFixture { };

TEST_F(LinkCaseTest, ARenamedFolderKeepsEveryLinkPointingAtItsProfiles)
{
    makeProfile(QStringLiteral("eu/Sub/Rome.ini"));
    makeProfile(QStringLiteral("eu/Paris.ini"));
    makeProfile(QStringLiteral("asia/Tokyo.ini"));
    const struct {
        const char* before;
        const char* after;
    } sites[] = {
        { "eu/Sub/Rome.ini", "EuRo/Sub/Rome.ini" },
        // Written by hand or by an older release in another case: still the same folder.
        { "EU/Paris.ini", "EuRo/Paris.ini" },
        { "asia/Tokyo.ini", "asia/Tokyo.ini" },
    };
    QStringList before;
    for (const auto& site : sites)
        before.append(profile(QString::fromUtf8(site.before)));
    makeLink(QStringLiteral("weekly"), before);

    ProfileStore store(notifier_, events_);
    ASSERT_EQ(store.renameFolder(profile(QStringLiteral("eu")), QStringLiteral("EuRo")),
        profile(QStringLiteral("EuRo")));

    const Link link = LinkFile::read(linkPath(QStringLiteral("weekly")));
    ASSERT_EQ(link.sites.size(), std::size(sites));
    for (std::size_t i = 0; i < std::size(sites); ++i) {
        EXPECT_EQ(link.sites[i].profile, profile(QString::fromUtf8(sites[i].after)));
        EXPECT_TRUE(QFileInfo::exists(link.sites[i].profile)) << sites[i].after;
    }
}

} // namespace
} // namespace zelto::test
