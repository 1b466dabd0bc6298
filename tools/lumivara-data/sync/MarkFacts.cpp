#include "lumivara-data/sync/MarkFacts.h"

#include "lumivara-data/marks/MarksForms.h"

#include <cstring>

namespace {

quint32 TraitOf(const QByteArray &text)
{
    const SyncId id = SyncId::Of({text});
    quint32 trait = 0;
    std::memcpy(&trait, id.bytes.data(), sizeof trait);
    return trait;
}

} // namespace

MarkFacts FactsOf(const Mark &mark)
{
    const QByteArray text = QByteArray::number(mark.collection) + '-' + QByteArray::number(mark.text);
    const QByteArray priority = mark.priority ? QByteArray::number(*mark.priority) : QByteArray();
    MarkFacts facts;
    facts.excerpt = SyncId::Of({mark.excerpt});
    facts.face = SyncId::Of(
        {text, mark.title.toUtf8(), mark.keywords.toUtf8(), mark.note.toUtf8(), priority, facts.excerpt.Hex()});
    facts.content = ContentOf(facts.face, mark.time);
    facts.traits = {TraitOf(text), TraitOf(mark.title.toUtf8()), TraitOf(mark.keywords.toUtf8()),
                    TraitOf(mark.note.toUtf8()), TraitOf(priority)};
    facts.time = mark.time;
    return facts;
}

SyncId ContentOf(const SyncId &face, const QString &time)
{
    return SyncId::Of({face.Hex(), time.toUtf8()});
}
