#include "support/TestSupport.h"
#include "tools/ToolSupport.h"

#include <QCoreApplication>
#include <QProcess>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// What scripts/changes says of a tree with these two files: the output, or "CODE: " and the errors.
std::string Said(const QString &what, const QByteArray &head, const QByteArray &changes)
{
    const ScratchFolder scratch;
    WriteFile(
        scratch.Path(u"debian/changelog"_s),
        head + "\n\n  * x\n\n -- A B <a@b>  Thu, 26 Nov 2026 23:30:00 -0100\n\nlumivara (0.9.0) stable; urgency=low\n");
    WriteFile(scratch.Path(u"CHANGELOG.md"_s), "# Changes\n\n" + changes);
    QProcess process;
    process.start(u"/usr/bin/python3"_s, {QCoreApplication::applicationDirPath() + u"/packaging/changes"_s, what,
                                          u"--root"_s, scratch.Path({})});
    EXPECT_TRUE(process.waitForFinished());
    const std::string errors = process.readAllStandardError().trimmed().toStdString();
    return process.exitCode() ? std::to_string(process.exitCode()) + ": " + errors
                              : process.readAllStandardOutput().trimmed().toStdString();
}

TEST(Changes, AreToldOfTheVersionThatIsPacked)
{
    const QByteArray open = "lumivara (1.2.0) UNRELEASED; urgency=medium",
                     closed = "lumivara (1.2.0) stable; urgency=medium";
    const QByteArray coming = "## Unreleased\n\nMore & more\nto come.\n\n### New\n- c\n\n";
    const QByteArray newest = "## 1.2.0 (2026-11-27)\n\nIt reads.\n- b\n\n",
                     first = "## 0.9.0 (2025-01-02)\n\nIt runs.\n";
    const std::string told =
        "<release version=\"0.9.0\" date=\"2025-01-02\">\n      <description>\n        <p>It runs.</p>\n"
        "      </description>\n    </release>";
    const auto release = [](const std::string &head, const std::string &summary) {
        return "<release " + head + ">\n      <description>\n        <p>" + summary +
               "</p>\n      </description>\n    </release>\n    ";
    };
    const std::tuple<const char *, QString, QByteArray, QByteArray, std::string> rows[]{
        {"Version", u"version"_s, open, coming, "1.2.0"},
        {"TimeOfTheEntry", u"time"_s, open, coming, "1795739400"},
        {"NotesOfWhatComes", u"notes"_s, open, coming + first, "More & more\nto come.\n\n### New\n- c"},
        {"NotesOfTheRelease", u"notes"_s, closed, coming + newest + first, "It reads.\n- b"},
        {"NoNotes", u"notes"_s, closed, first, "1: CHANGELOG.md: no section for 1.2.0"},
        {"ReleasesBefore", u"releases"_s, open, coming + first,
         release(R"(version="1.2.0" date="2026-11-27" type="development")", "More &amp; more to come.") + told},
        {"Releases", u"releases"_s, closed, coming + newest + first,
         release(R"(version="1.2.0" date="2026-11-27")", "It reads.") + told},
        {"Ready", u"check"_s, closed, newest + first, ""},
        {"NotReleased", u"check"_s, open, newest, "1: debian/changelog: 1.2.0 is UNRELEASED"},
        {"StillUnreleased", u"check"_s, closed, coming,
         "1: CHANGELOG.md: the first section is not \"## 1.2.0 (2026-11-27)\""},
        {"OtherDay", u"check"_s, closed, "## 1.2.0 (2026-11-26)\n\nIt reads.\n",
         "1: 1.2.0 is of 2026-11-26 in CHANGELOG.md, and of 2026-11-27 in debian/changelog"},
        {"NothingInFront", u"check"_s, closed, "## 1.2.0 (2026-11-27)\n\n- b\n",
         "1: CHANGELOG.md: no paragraph opens the section of 1.2.0"},
        {"NoHeading", u"notes"_s, closed, "## 1.2\n\nb\n",
         "1: CHANGELOG.md: \"## 1.2\" is neither \"## N.N.N (YYYY-MM-DD)\" nor \"## Unreleased\""},
        {"NoEntry", u"version"_s, "lumivara (1.2) stable;", newest,
         "1: debian/changelog: its first entry is not \"lumivara (N.N.N) DISTRIBUTION;\" with a trailer"},
    };
    for (const auto &[name, what, head, changes, expected] : rows)
        EXPECT_EQ(Said(what, head, changes), expected) << name;
}

} // namespace
