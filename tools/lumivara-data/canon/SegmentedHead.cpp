#include "lumivara-data/canon/SegmentedHead.h"

#include "common/Report.h"
#include "lumivara-data/canon/CanonWriter.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool IsBlank(const QByteArray &text)
{
    return QByteArrayView(text).trimmed().isEmpty();
}

/// "118" of "Majjhima Nikāya 118", "1.2-3" of "Nikāya 1.2–3".
const QRegularExpression &NumberAtEnd()
{
    static const QRegularExpression number(uR"((\d+(?:[.\-–]\d+)*)\.?\s*$)"_s);
    return number;
}

QString NumberIn(const LanguageNames &names, const QRegularExpression &number)
{
    for (const QString &name : names) {
        if (const auto match = number.match(name); match.hasMatch())
            return match.captured(1);
    }
    return {};
}

/// The number of the text itself stands at an end; that of a group stands in front of its name.
QString NumberAbove(const QList<LanguageNames> &above)
{
    static const QRegularExpression inFront(uR"(^\s*(\d+(?:[.\-–]\d+)*))"_s);
    for (const QRegularExpression *place : {&NumberAtEnd(), &inFront}) {
        for (auto names = above.crbegin(); names != above.crend(); ++names) {
            if (const QString number = NumberIn(*names, *place); !number.isEmpty())
                return number;
        }
    }
    return {};
}

/// The first one that the text has.
QString AnyOf(const LanguageNames &names)
{
    const auto *const name =
        std::find_if(names.begin(), names.end(), [](const QString &one) { return !one.isEmpty(); });
    return name == names.end() ? QString() : *name;
}

/// A group, by its texts.
struct Node
{
    QString parent;
    int groups = 0; ///< in it
    bool hasTexts = false;
    bool isMet = false;          ///< by a text
    QList<LanguageNames> shared; ///< what stands above all its texts

    void Meet(const QList<LanguageNames> &above)
    {
        if (!std::exchange(isMet, true)) {
            shared = above;
            return;
        }
        qsizetype same = 0;
        for (; same < qMin(shared.size(), above.size()); ++same) {
            const QString name = AnyOf(shared[same]);
            if (name.isEmpty() || name != AnyOf(above[same]))
                break;
            for (size_t language = 0; language < LanguageCount; ++language) {
                if (shared[same][language].isEmpty())
                    shared[same][language] = above[same][language];
            }
        }
        shared.resize(same);
    }
};

} // namespace

bool IsHeading(const AlignedSegment &segment)
{
    // Not each tag with such a begin is one: "<header>" often stands before it.
    const QByteArray &markup = segment.markup;
    for (qsizetype at = markup.indexOf("<h"); at >= 0 && at + 2 < markup.size(); at = markup.indexOf("<h", at + 2)) {
        if (markup[at + 2] >= '1' && markup[at + 2] <= '6')
            return true;
    }
    return false;
}

bool IsOfHead(const QByteArray &id)
{
    const qsizetype colon = id.indexOf(':');
    const QByteArrayView place = QByteArrayView(id).sliced(colon + 1);
    return colon >= 0 && (place == "0" || place.startsWith("0."));
}

SegmentedHead HeadOf(const std::vector<AlignedSegment> &segments)
{
    SegmentedHead head;
    std::vector<int> heads;
    for (size_t at = 0; at < segments.size(); ++at) {
        const AlignedSegment &segment = segments[at];
        const bool isTitle = IsHeading(segment);
        for (size_t language = 0; isTitle && language < LanguageCount; ++language) {
            if (!head.titles[language].isEmpty() || IsBlank(segment.text[language]))
                continue;
            head.titles[language] = segment.text[language].trimmed();
            if (head.title < 0)
                head.title = static_cast<int>(at);
        }
        if (IsOfHead(segment.id))
            heads.push_back(static_cast<int>(at));
    }
    for (size_t language = 0; head.title < 0 && language < LanguageCount; ++language) {
        for (const int at : heads) {
            if (!IsBlank(segments[size_t(at)].text[language]))
                head.title = at;
        }
    }
    for (size_t language = 0; head.title >= 0 && language < LanguageCount; ++language) {
        if (head.titles[language].isEmpty())
            head.titles[language] = segments[size_t(head.title)].text[language].trimmed();
    }
    // Of a stranger's file no more than of any sensible one.
    constexpr qsizetype most = 16;
    Report ignored;
    for (const int at : heads) {
        if (at >= head.title || head.above.size() == most)
            break;
        LanguageNames names;
        for (size_t language = 0; language < LanguageCount; ++language)
            names[language] = FittingName(QString::fromUtf8(segments[size_t(at)].text[language]), {}, ignored);
        head.above.append(names);
    }
    head.number = NumberAbove(head.above);
    for (LanguageNames &names : head.above) {
        for (QString &name : names)
            name = name.remove(NumberAtEnd()).trimmed();
    }
    return head;
}

QHash<QString, LanguageNames> GroupNames(const QStringList &groups, const QList<PlacedHead> &texts)
{
    QHash<QString, Node> nodes; // the whole collection under an empty path
    QHash<QString, QString> onlyChild;
    for (const QString &path : groups) {
        const QString parent = path.section(u'/', 0, -2);
        nodes[path].parent = parent;
        ++nodes[parent].groups;
        onlyChild[parent] = path;
    }
    for (const PlacedHead &text : texts) {
        nodes[text.group].hasTexts = true;
        for (QString path = text.group;; path = path.section(u'/', 0, -2)) {
            nodes[path].Meet(text.above);
            if (path.isEmpty())
                break;
        }
    }
    QHash<QString, LanguageNames> names;
    QSet<QString> done;
    for (const QString &path : groups) {
        if (done.contains(path))
            continue;
        QStringList chain{path};
        while (nodes[chain.last()].groups == 1 && !nodes[chain.last()].hasTexts)
            chain.append(onlyChild[chain.last()]);
        const Node &around = nodes[nodes[path].parent];
        // A single group of all has nobody to be told from.
        qsizetype first = around.shared.size();
        if (nodes[path].parent.isEmpty() && around.groups == 1)
            first = 0;
        qsizetype at = nodes[path].shared.size() - 1;
        for (auto group = chain.crbegin(); group != chain.crend(); ++group, --at) {
            done.insert(*group);
            const QList<LanguageNames> &shared = nodes[*group].shared;
            if (at < first || AnyOf(shared[at]).isEmpty())
                continue;
            LanguageNames own = shared[at];
            for (QString &name : own) {
                if (name.isEmpty())
                    name = AnyOf(shared[at]);
            }
            names.insert(*group, own);
        }
    }
    return names;
}
