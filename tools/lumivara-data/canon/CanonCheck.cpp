#include "lumivara-data/canon/CanonCheck.h"

#include "base/Messages.h"
#include "stores/Schema.h"

#include <QHash>
#include <QMap>
#include <QSet>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int RootKey = -1;
/// What the tree adds to a group's key to number its row.
constexpr int GroupNumberBase = 1000;

QString NumberText(const std::optional<int> &number)
{
    return number ? QString::number(*number) : u"null"_s;
}

QString RowName(const CheckedGroup &group)
{
    return Sentence({u"nhóm %1", u"group %1"}).arg(NumberText(group.idVit));
}

QString RowName(const CheckedText &text)
{
    return Sentence({u"bài %1 của nhóm %2", u"text %1 of group %2"})
        .arg(NumberText(text.idVic), NumberText(text.idVit));
}

class Checker
{
public:
    explicit Checker(const CheckedCanon &canon) : m_canon(canon)
    {
        for (const CheckedGroup &group : canon.groups) {
            if (group.idVit)
                m_parents.insert(*group.idVit, group.parent.value_or(RootKey));
        }
    }

    QList<Finding> Run()
    {
        CheckMissingKeys();
        CheckTreeKeys();
        CheckGroupNumbers();
        CheckParents();
        CheckCycles();
        CheckUniqueNumbers();
        CheckRunningNumbers();
        CheckNames();
        CheckPages();
        return m_findings;
    }

private:
    template <typename Row>
    void Report(const Row &row, const QString &fault, bool mayStay = false)
    {
        m_findings.append({RowName(row), fault, mayStay});
    }

    void CheckMissingKeys()
    {
        for (const CheckedGroup &group : m_canon.groups) {
            if (!group.idVit)
                Report(group, Sentence({u"ID_VIT là null", u"ID_VIT is null"}));
            else if (*group.idVit == RootKey)
                Report(group,
                       Sentence({u"ID_VIT là %1, gốc của cây", u"ID_VIT is %1, the root of the tree"}).arg(RootKey));
            if (!group.parent)
                Report(group, Sentence({u"P_ID_VIT là null", u"P_ID_VIT is null"}));
        }
        for (const CheckedText &text : m_canon.texts) {
            if (!text.idVic)
                Report(text, Sentence({u"ID_VIC là null", u"ID_VIC is null"}));
            if (!text.idVit)
                Report(text, Sentence({u"ID_VIT là null", u"ID_VIT is null"}));
        }
    }

    /// The keys are compared as the tree does: as text, a passage's made of two numbers without a separator.
    void CheckTreeKeys()
    {
        QHash<QString, QString> owners;
        const auto claim = [&](const auto &row, const QString &key) {
            if (owners.contains(key))
                Report(row, Sentence({u"TREE_ID \"%1\" cũng là khóa của %2", u"TREE_ID \"%1\" is the key of %2 too"})
                                .arg(key, owners[key]));
            else
                owners.insert(key, RowName(row));
        };
        for (const CheckedGroup &group : m_canon.groups) {
            if (group.idVit)
                claim(group, QString::number(*group.idVit));
        }
        for (const CheckedText &text : m_canon.texts) {
            if (text.idVic && text.idVit)
                claim(text, QString::number(*text.idVic) + QString::number(*text.idVit));
        }
    }

    void CheckGroupNumbers()
    {
        QSet<qint64> numbers;
        for (const CheckedText &text : m_canon.texts) {
            if (text.idVic)
                numbers.insert(*text.idVic);
        }
        for (const CheckedGroup &group : m_canon.groups) {
            const qint64 number = qint64(GroupNumberBase) + group.idVit.value_or(0);
            if (number > std::numeric_limits<qint32>::max())
                Report(group, Sentence({u"1000 + ID_VIT là %1, lớn hơn mức một số có thể có: cây không mở được",
                                        u"1000 + ID_VIT is %1, more than a number can be: the tree does not open"})
                                  .arg(number));
            if (group.idVit && numbers.contains(number))
                Report(group, Sentence({u"1000 + ID_VIT là %1, số của một bài: nhóm sẽ hiện bài đó",
                                        u"1000 + ID_VIT is %1, the number of a text: the group shows that text"})
                                  .arg(number));
        }
    }

    void CheckParents()
    {
        for (const CheckedGroup &group : m_canon.groups) {
            if (group.parent && *group.parent != RootKey && !m_parents.contains(*group.parent))
                Report(group,
                       Sentence({u"không có nhóm cha %1", u"the parent group %1 does not exist"}).arg(*group.parent));
        }
        for (const CheckedText &text : m_canon.texts) {
            if (text.idVit && !m_parents.contains(*text.idVit))
                Report(text, Sentence({u"không có nhóm %1", u"the group %1 does not exist"}).arg(*text.idVit));
        }
    }

    /// A group is on a cycle if the way up comes back to it; groups below a cycle are not reported with it. Each group
    /// is passed once.
    void CheckCycles()
    {
        QHash<int, qsizetype> passedBy; // the way on which a group was passed first, from 1
        QSet<int> cyclic;
        for (qsizetype way = 1; way <= m_canon.groups.size(); ++way) {
            int at = m_canon.groups[way - 1].idVit.value_or(RootKey);
            for (; at != RootKey && !passedBy.contains(at); at = m_parents.value(at, RootKey))
                passedBy.insert(at, way);
            if (at == RootKey || passedBy[at] != way)
                continue;
            for (; !cyclic.contains(at); at = m_parents.value(at, RootKey))
                cyclic.insert(at);
        }
        for (const CheckedGroup &group : m_canon.groups) {
            if (group.idVit && cyclic.contains(*group.idVit))
                Report(group, Sentence({u"là nhóm trên của chính nó", u"is its own ancestor"}));
        }
    }

    void CheckUniqueNumbers()
    {
        QHash<int, QString> owners;
        for (const CheckedText &text : m_canon.texts) {
            if (!text.idVic)
                continue;
            if (owners.contains(*text.idVic))
                Report(text, Sentence({u"ID_VIC %1 cũng là số của %2", u"ID_VIC %1 is the number of %2 too"})
                                 .arg(QString::number(*text.idVic), owners[*text.idVic]));
            else
                owners.insert(*text.idVic, RowName(text));
        }
    }

    void CheckRunningNumbers()
    {
        QMap<int, QString> owners;
        for (const CheckedText &text : m_canon.texts) {
            if (!text.number) {
                Report(text, Sentence({u"NUMBER_VIC là null", u"NUMBER_VIC is null"}));
            } else if (owners.contains(*text.number)) {
                Report(text, Sentence({u"NUMBER_VIC %1 cũng là của %2", u"NUMBER_VIC %1 is that of %2 too"})
                                 .arg(QString::number(*text.number), owners[*text.number]));
            } else {
                owners.insert(*text.number, RowName(text));
                if (*text.number < 1)
                    Report(text,
                           Sentence({u"NUMBER_VIC là %1, nhỏ hơn 1", u"NUMBER_VIC is %1, below 1"}).arg(*text.number));
            }
        }
        int expected = 1;
        for (auto it = owners.lowerBound(1); it != owners.cend(); ++it) {
            if (it.key() > expected) {
                const QString gap = it.key() == expected + 1
                                        ? Sentence({u"%1", u"%1 is"}).arg(expected)
                                        : Sentence({u"%1 đến %2", u"%1 to %2 are"}).arg(expected).arg(it.key() - 1);
                m_findings.append({it.value(), Sentence({u"NUMBER_VIC là %1, và thiếu %2 trước nó",
                                                         u"NUMBER_VIC is %1, and %2 missing before it"})
                                                   .arg(it.key())
                                                   .arg(gap)});
            }
            expected = it.key() + 1;
        }
    }

    template <typename Row>
    void CheckName(const Row &row, const QString &column, const QString &name, bool mayBeNull)
    {
        if (name.isEmpty() && (!mayBeNull || !name.isNull()))
            Report(row,
                   name.isNull() ? Sentence({u"%1 là null", u"%1 is null"}).arg(column)
                                 : Sentence({u"%1 trống", u"%1 is empty"}).arg(column),
                   true);
        if (name.size() > Length::Name)
            Report(row, Sentence({u"%1 có %2 ký tự, nhiều hơn %3", u"%1 has %2 characters, more than %3"})
                            .arg(column)
                            .arg(name.size())
                            .arg(Length::Name));
    }

    void CheckNames()
    {
        for (const CheckedGroup &group : m_canon.groups) {
            CheckName(group, Field::NameVitVie, group.nameVietnamese, false);
            CheckName(group, Field::NameVitPal, group.namePali, false);
            CheckName(group, Field::NameVitEng, group.nameEnglish, true);
        }
        for (const CheckedText &text : m_canon.texts) {
            CheckName(text, Field::NameVicVie, text.nameVietnamese, false);
            CheckName(text, Field::NameVicPal, text.namePali, false);
            CheckName(text, Field::NameVicEng, text.nameEnglish, true);
        }
    }

    void CheckPages()
    {
        for (const CheckedText &text : m_canon.texts) {
            for (const CheckedPage &page : text.pages) {
                if (page.facts.firstBadByte >= 0)
                    Report(text, Sentence({u"%1 không phải UTF-8 ở byte %2", u"%1 is not UTF-8 at byte %2"})
                                     .arg(page.column)
                                     .arg(page.facts.firstBadByte));
                if (page.facts.charset.isEmpty())
                    Report(text, Sentence({u"%1 không khai báo bảng mã", u"%1 names no charset"}).arg(page.column));
                else if (page.facts.charset != "utf-8" && page.facts.charset != "utf8")
                    Report(text, Sentence({u"%1 khai báo bảng mã %2", u"%1 names the charset %2"})
                                     .arg(page.column, QString::fromLatin1(page.facts.charset)));
            }
        }
    }

    const CheckedCanon &m_canon;
    /// Parent by group.
    QHash<int, int> m_parents;
    QList<Finding> m_findings;
};

} // namespace

QList<Finding> CheckCanon(const CheckedCanon &canon)
{
    return Checker(canon).Run();
}

bool MayStay(const QList<Finding> &findings)
{
    return std::all_of(findings.cbegin(), findings.cend(), [](const Finding &finding) { return finding.mayStay; });
}
