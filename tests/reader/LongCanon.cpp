#include "reader/LongCanon.h"

#include "reader/ReaderWindow.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

constexpr int paragraphs = 65; // Firebird takes at most 21,845 letters in a literal

QByteArray LongPage(const char *word)
{
    QByteArray page;
    for (int number = 0; number < paragraphs; ++number)
        page += "<p>" + QByteArray::number(number) + (' ' + QByteArray(word)).repeated(LongParagraph / 5) + "</p>";
    return page;
}

} // namespace

const ScratchFolder &LongCanon()
{
    static const ScratchFolder folder;
    static const bool isMade = [] {
        QFile::link(ProductFolder() + u"libfbclient.so.2"_s, folder.Path(u"libfbclient.so.2"_s));
        QFile::link(ProductFolder() + u"firebird"_s, folder.Path(u"firebird"_s));
        QByteArray script =
            "create table KELORA_TREE (ID_VIT integer not null, P_ID_VIT integer, NAME_VIT_VIE varchar(127),\n"
            "NAME_VIT_PAL varchar(127), NAME_VIT_ENG varchar(127));\n"
            "create table KELORA_CONTENT (ID_VIT integer not null, ID_VIC integer not null, NAME_VIC_PAL "
            "varchar(127),\n"
            "NAME_VIC_ENG varchar(127), NAME_VIC_VIE varchar(127), NUMBER_VIC integer, CONTENT_VIC_PAL blob,\n"
            "CONTENT_VIC_ENG blob, CONTENT_VIC_VIE blob, CONTENT_VIC_PAL_VIE blob);\n"
            "commit work;\n"
            "insert into KELORA_TREE values (1, -1, 'Nhom', 'Vagga', 'Group');\n";
        for (const char *number : {"1101", "1102", "1103"}) {
            script += QByteArray("insert into KELORA_CONTENT values (1, ") + number + ", 'Pali " + number +
                      "', null, 'Bai " + number + "', 1, '" + LongPage("pali") + "', null, '" + LongPage("viet") +
                      "', null);\n";
        }
        script += "commit work;\n";
        MakeDatabase(folder.Path(u"KELORA.FDB"_s), folder.Path(u"Lumivara"_s), script.constData());
        return true;
    }();
    EXPECT_TRUE(isMade);
    return folder;
}
