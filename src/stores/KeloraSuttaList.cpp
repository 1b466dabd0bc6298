#include "stores/KeloraSuttaList.h"

#include "stores/Schema.h"
#include "stores/data/FIBDataSet.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace {

QString Literal(QString title)
{
    return title.isNull() ? u"NULL"_s : u'\'' + title.replace(u'\'', u"''"_s) + u'\'';
}

} // namespace

QList<KeloraText> KeloraTexts(TpFIBDatabase &canon, TpFIBTransaction &transaction)
{
    TpFIBDataSet rows;
    rows.SetDatabase(&canon);
    rows.SetTransaction(&transaction);
    rows.SelectSQL() =
        QStringList{u"select C.ID_VIC, C.NAME_VIC_VIE, C.NAME_VIC_PAL, C.NAME_VIC_ENG from KELORA_CONTENT C"_s};
    const auto name = [&rows](const QString &column) {
        QString text = rows.FieldByName(column).AsString().left(Length::Name);
        if (!text.isEmpty() && text.back().isHighSurrogate())
            text.chop(1);
        return text.isEmpty() ? QString() : text;
    };
    QList<KeloraText> texts;
    QSet<int> listed;
    for (rows.Open(); !rows.Eof(); rows.Next()) {
        // One row that the list refuses would cost it all others.
        const TField &number = rows.FieldByName(Field::IdVic);
        if (number.IsNull() || listed.contains(number.AsInteger()))
            continue;
        listed.insert(number.AsInteger());
        texts.append({number.AsInteger(), name(Field::NameVicVie), name(Field::NameVicPal), name(Field::NameVicEng)});
    }
    return texts;
}

QStringList KeloraSuttaListScript(const QList<KeloraText> &texts)
{
    QStringList script;
    for (const KeloraText &text : texts) {
        script.append(
            u"INSERT INTO SUTTA_LIST (NIK_SUT, NIC_SUT, NAME_SUT_VIE, NAME_SUT_PAL, NAME_SUT_ENG, FAVOURITE_SUT)"_s);
        script.append(u"                VALUES (6, "_s + QString::number(text.number) + u", "_s +
                      Literal(text.vietnamese) + u", "_s + Literal(text.pali) + u", NULL, NULL);"_s);
    }
    script.append(u"COMMIT WORK;"_s);
    return script;
}
