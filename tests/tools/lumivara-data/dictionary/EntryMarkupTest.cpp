#include "lumivara-data/dictionary/EntryMarkup.h"
#include "lumivara-data/dictionary/DictionaryCheck.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray Converted(char type, QByteArrayView text)
{
    EntryMarkup entry("gāma");
    if (type == 'm')
        entry.AddPlain(text);
    else
        entry.AddTagged(text, type == 'h' ? TagDialect::Html : type == 'x' ? TagDialect::Xdxf : TagDialect::Pango);
    return entry.Take();
}

TEST(EntryMarkup, GivesLinesOfTheMarkUp)
{
    const std::tuple<char, QByteArray, const char *> rows[]{
        // the type as StarDict tells it
        {'m', "one\r\n\r\ntwo <3 & #4\n#5", "@gāma\none<br />\ntwo &lt;3 &amp; #4<br />\n&#35;5<br />"},
        {'m', "@gāma /x/\n* noun\n- village+làng\nrest", "@gāma /x/\n* noun\n- village+làng\nrest<br />"},
        {'m', "gāma, m.\n1. a+b\n- c", "@gāma, m.\n- 1. a&#43;b\n- c"},
        {'h', "<b>Gāma</b>, m.<ol><li><p>village</p><ul><li>a <i>b</i></ul></li><li>two + three</ol>end",
         "@<b>Gāma</b>, m.\n- village\n= a <i>b</i>\n- two &#43; three\nend<br />"},
        {'h', "<h1> gāma </h1><h2>uses</h2><dl><dt>in verse<dd>rare</dl>", "@gāma\n* uses\n* in verse\n- rare"},
        {'h', "<!-- a<b --><STYLE>p{}</style>x<script>if(a<b)</SCRIPT\n>y<img src='>'>", "@gāma\nxy<br />"},
        {'h', "&eacute;&#7789;&#x1E43;&lt;b&gt;&nope;&amp;amp;&#0;&",
         "@gāma\néṭṃ&lt;b&gt;&amp;nope;&amp;amp;&amp;#0;&amp;<br />"},
        {'h', "<b>a<i>b</b>c<br>d</i></i>e", "@gāma\n<b>a</b><b><i>b</i></b><i>c</i><br />\n<i>d</i>e<br />"},
        {'h', "a < b <c d <e f=\"x>y\">g</ h", "@gāma\na &lt; b &lt;c d g&lt;/ h<br />"},
        {'h', "<table><tr><td>a<td>b<tr><td>c</table>", "@gāma\na | b<br />\nc<br />"},
        {'g', "<b>gāma</b>\n<span color=\"red\">x</span>", "@<b>gāma</b>\nx<br />"},
        {'x',
         "<ar><k>gāma</k>\n<gr>m.</gr>\n<def>village<ex><ex_orig>go +</ex_orig><ex_tran>đi</ex_tran></ex>"
         "<tr>ga</tr></def><rref>a.wav</rref></ar>",
         "@gāma\n* <i>m.</i>\n- village\n=go &#43;+đi\n[ga]<br />"},
        {'h', " <p> </p>", ""}};
    for (const auto &[type, text, entry] : rows)
        EXPECT_EQ(Converted(type, text).toStdString(), entry);
}

TEST(EntryMarkup, LinesFitIntoWhatTheFormatterReads)
{
    for (const QByteArray &text :
         {QByteArray("làng ").repeated(1000), QByteArray("ạ").repeated(5000), QByteArray("&lt;").repeated(3000)}) {
        const QByteArray entry = Converted('h', "<li><b>" + text);
        for (const QByteArray &line : entry.split('\n')) {
            EXPECT_LE(line.size(), 4096);
            EXPECT_TRUE(line.isValidUtf8()) << "a character is cut in two";
        }
        EXPECT_TRUE(TagFault(entry).isEmpty());
        const QByteArray sign = text.startsWith("&") ? "&lt;" : text.left(3);
        EXPECT_EQ(QByteArray(entry).replace('\n', "").count(sign), text.count(sign));
    }
}

} // namespace
