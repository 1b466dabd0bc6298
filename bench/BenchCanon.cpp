#include "BenchCanon.h"

#include "stores/data/FIBDataSet.h"
#include "stores/engine/Database.h"
#include "stores/engine/Scripter.h"

#include <QFile>

namespace {

constexpr int TextsInGroup = 20;
// Beyond every text's number less 1000, so that no group shows a passage.
constexpr int FirstGroup = 100000;

void FillGroups(TpFIBDatabase &database, int groups)
{
    TpFIBDataSet rows;
    rows.SetDatabase(&database);
    rows.SelectSQL() = QStringList{QStringLiteral("select * from KELORA_TREE")};
    rows.InsertSQL() = QStringList{QStringLiteral("insert into KELORA_TREE values (:ID_VIT, :P_ID_VIT, :NAME_VIT_VIE, "
                                                  ":NAME_VIT_PAL, :NAME_VIT_ENG)")};
    rows.Open();
    for (int group = 0; group < groups; ++group) {
        rows.Append();
        rows.FieldByName(QStringLiteral("ID_VIT")).SetAsInteger(FirstGroup + group);
        rows.FieldByName(QStringLiteral("P_ID_VIT")).SetAsInteger(-1);
        rows.FieldByName(QStringLiteral("NAME_VIT_VIE")).SetAsString(QStringLiteral("Nhóm thứ %1").arg(group));
        rows.FieldByName(QStringLiteral("NAME_VIT_PAL")).SetAsString(QStringLiteral("Vaggo %1").arg(group));
        rows.Post();
    }
}

void FillTexts(TpFIBDatabase &database, int texts, const std::function<QByteArray(int)> &page)
{
    TpFIBDataSet rows;
    rows.SetDatabase(&database);
    rows.SelectSQL() = QStringList{QStringLiteral("select * from KELORA_CONTENT")};
    rows.InsertSQL() = QStringList{
        QStringLiteral("insert into KELORA_CONTENT (ID_VIT, ID_VIC, NAME_VIC_PAL, NAME_VIC_VIE, NUMBER_VIC, "
                       "CONTENT_VIC_VIE) values (:ID_VIT, :ID_VIC, :NAME_VIC_PAL, :NAME_VIC_VIE, :NUMBER_VIC, "
                       ":CONTENT_VIC_VIE)")};
    rows.Open();
    for (int text = 0; text < texts; ++text) {
        rows.Append();
        rows.FieldByName(QStringLiteral("ID_VIT")).SetAsInteger(FirstGroup + text / TextsInGroup);
        rows.FieldByName(QStringLiteral("ID_VIC")).SetAsInteger(FirstBenchText + text);
        rows.FieldByName(QStringLiteral("NAME_VIC_PAL"))
            .SetAsString(QStringLiteral("Paṭhamaṃ sikkhāpadaṃ %1").arg(text));
        rows.FieldByName(QStringLiteral("NAME_VIC_VIE")).SetAsString(QStringLiteral("Điều học thứ %1").arg(text));
        rows.FieldByName(QStringLiteral("NUMBER_VIC")).SetAsInteger(text + 1);
        rows.FieldByName(QStringLiteral("CONTENT_VIC_VIE")).SetAsBytes(page(text));
        rows.Post();
    }
}

} // namespace

void MakeCanon(const QString &clientLibrary, const QString &path, int texts, const QByteArray &page)
{
    const QByteArray shortPage = PlainPage(0);
    MakeCanon(clientLibrary, path, texts, [&](int text) { return text == 0 ? shortPage : page; });
}

void MakeCanon(const QString &clientLibrary, const QString &path, int texts, const std::function<QByteArray(int)> &page)
{
    QFile::remove(path);
    TpFIBDatabase database;
    database.SetLibraryName(clientLibrary);
    database.SetDBName(path);
    database.DBParams() = QStringList{QStringLiteral("lc_ctype=UNICODE_FSS"), QStringLiteral("user_name=SYSDBA"),
                                      QStringLiteral("password=lotuspond")};
    database.SetCharSet(QStringLiteral("UNICODE_FSS"));
    database.CreateDatabase();

    const QString name = QStringLiteral(" varchar(127) character set UNICODE_FSS, ");
    TpFIBScripter scripter;
    scripter.SetDatabase(&database);
    scripter.Script() = QStringList{
        QStringLiteral("create table KELORA_TREE (ID_VIT integer, P_ID_VIT integer, NAME_VIT_VIE") + name +
            QStringLiteral("NAME_VIT_PAL") + name +
            QStringLiteral("NAME_VIT_ENG varchar(127) character set UNICODE_FSS);"),
        QStringLiteral("create table KELORA_CONTENT (ID_VIT integer, ID_VIC integer, NAME_VIC_PAL") + name +
            QStringLiteral("NAME_VIC_ENG") + name + QStringLiteral("NAME_VIC_VIE") + name +
            QStringLiteral("NUMBER_VIC integer, CONTENT_VIC_PAL blob, CONTENT_VIC_ENG blob, CONTENT_VIC_VIE blob, "
                           "CONTENT_VIC_PAL_VIE blob);"),
        QStringLiteral("create index KELORA_CONTENT_ID_VIC on KELORA_CONTENT (ID_VIC);"),
        QStringLiteral("COMMIT WORK;")};
    scripter.ExecuteScript();

    TpFIBTransaction transaction;
    transaction.SetDefaultDatabase(&database);
    database.SetDefaultTransaction(&transaction);
    transaction.SetActive(true);
    FillGroups(database, (texts + TextsInGroup - 1) / TextsInGroup);
    FillTexts(database, texts, page);
    transaction.Commit();
    database.SetConnected(false);
}

QByteArray PlainPage(qsizetype bytes)
{
    QByteArray page = "<html><head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"></head>"
                      "<body style=\"font-family:'Segoe UI'; line-height:150%\">\n";
    page.reserve(bytes + 1000);
    for (int number = 1; page.size() < bytes; ++number) {
        page += "<p>" + QByteArray::number(number) +
                ". Bhikkhu nāma yo koci sikkhaṃ samādiyati; vị tỳ khưu học điều học này thì giữ gìn nó, ";
        // Paragraphs of one to six sentences, so that their heights differ.
        for (int sentence = 0; sentence < number % 6; ++sentence)
            page += "suy xét kỹ trước khi làm, trong khi làm và sau khi làm; evaṃ sikkhitabbaṃ. ";
        page += "</p>\n";
    }
    return page + "</body></html>\n";
}
