#pragma once

#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>

/// What the three database files are made of: their names, tables, columns and lengths, and the numbers that stand in
/// them. A statement keeps its names in its own text.

/// A name in a database. Becomes a QString without taking memory.
class SchemaName
{
public:
    template <size_t Size>
    consteval SchemaName(const char16_t (&text)[Size]) : m_text(text), m_size(Size - 1)
    {}
    operator QString() const { return Qt::StringLiterals::operator""_s(m_text, static_cast<size_t>(m_size)); }

private:
    const char16_t *m_text;
    qsizetype m_size;
};

/// They stand beside the executable.
namespace DatabaseFile {
inline constexpr SchemaName Canon = u"KELORA.FDB";
inline constexpr SchemaName Marks = u"TARUNECLIENT.FDB";
inline constexpr SchemaName Dictionary = u"PALIDICT.FDB";
} // namespace DatabaseFile

/// Where a database stays that another one has replaced.
QString NameBefore(const QString &file);

namespace Table {
inline constexpr SchemaName KeloraTree = u"KELORA_TREE";
inline constexpr SchemaName KeloraContent = u"KELORA_CONTENT";
inline constexpr SchemaName KeloraSource = u"KELORA_SOURCE";     ///< of the tools alone
inline constexpr SchemaName DictionaryForm = u"DICTIONARY_FORM"; ///< of the tools alone
inline constexpr SchemaName SuttaList = u"SUTTA_LIST";
inline constexpr SchemaName SuttaTextFocus = u"SUTTA_TEXT_FOCUS";
inline constexpr SchemaName MarkSync = u"MARK_SYNC";          ///< of the tools alone
inline constexpr SchemaName MarkSyncFile = u"MARK_SYNC_FILE"; ///< of the tools alone
} // namespace Table

namespace Procedure {
inline constexpr SchemaName GetListWords = u"SP_GET_LIST_WORDS";
inline constexpr SchemaName GetWordContent = u"SP_GET_WORD_CONTENT";
inline constexpr SchemaName CheckWord = u"SP_CHECK_WORD";
inline constexpr SchemaName GetForms = u"SP_GET_FORMS"; ///< a file may do without it
} // namespace Procedure

/// Columns of tables, of the tree's select and of the procedures.
namespace Field {
// KELORA_TREE: a group
inline constexpr SchemaName IdVit = u"ID_VIT";
inline constexpr SchemaName ParentIdVit = u"P_ID_VIT";
inline constexpr SchemaName NameVitVie = u"NAME_VIT_VIE";
inline constexpr SchemaName NameVitPal = u"NAME_VIT_PAL";
inline constexpr SchemaName NameVitEng = u"NAME_VIT_ENG";
// KELORA_CONTENT: a text, in the group ID_VIT
inline constexpr SchemaName IdVic = u"ID_VIC";
inline constexpr SchemaName NameVicVie = u"NAME_VIC_VIE";
inline constexpr SchemaName NameVicPal = u"NAME_VIC_PAL";
inline constexpr SchemaName NameVicEng = u"NAME_VIC_ENG";
inline constexpr SchemaName NumberVic = u"NUMBER_VIC";
inline constexpr SchemaName ContentVicPal = u"CONTENT_VIC_PAL";
inline constexpr SchemaName ContentVicEng = u"CONTENT_VIC_ENG";
inline constexpr SchemaName ContentVicVie = u"CONTENT_VIC_VIE";
inline constexpr SchemaName ContentVicPalVie = u"CONTENT_VIC_PAL_VIE";
// KELORA_SOURCE: where the text ID_VIC was imported from
inline constexpr SchemaName IdSource = u"ID_SOURCE";
// the tree of both
inline constexpr SchemaName TreeId = u"TREE_ID";
inline constexpr SchemaName ParentTreeId = u"P_TREE_ID";
// SUTTA_LIST: a text of any collection
inline constexpr SchemaName NikSut = u"NIK_SUT";
inline constexpr SchemaName NicSut = u"NIC_SUT";
inline constexpr SchemaName NameSutVie = u"NAME_SUT_VIE";
inline constexpr SchemaName NameSutPal = u"NAME_SUT_PAL";
inline constexpr SchemaName NameSutEng = u"NAME_SUT_ENG";
inline constexpr SchemaName FavouriteSut = u"FAVOURITE_SUT";
// SUTTA_TEXT_FOCUS: a mark, on the text NIK_SUT, NIC_SUT
inline constexpr SchemaName IdFoc = u"ID_FOC";
inline constexpr SchemaName NameFoc = u"NAME_FOC";
inline constexpr SchemaName TextFoc = u"TEXT_FOC";
inline constexpr SchemaName PriorityFoc = u"PRIORITY_FOC";
inline constexpr SchemaName DescFoc = u"DESC_FOC";
inline constexpr SchemaName DatetimeFoc = u"DATETIME_FOC";
inline constexpr SchemaName KeywordFoc = u"KEYWORD_FOC";
// MARK_SYNC: a version of the mark ID_FOC, or of one that is no more
inline constexpr SchemaName VersionSyn = u"VERSION_SYN";
inline constexpr SchemaName MarkSyn = u"MARK_SYN";
inline constexpr SchemaName FaceSyn = u"FACE_SYN";
inline constexpr SchemaName TimeSyn = u"TIME_SYN";
inline constexpr SchemaName ExcerptSyn = u"EXCERPT_SYN";
inline constexpr SchemaName TraitsSyn = u"TRAITS_SYN";
// MARK_SYNC_FILE: what the file is called among those of a sync
inline constexpr SchemaName NameSyf = u"NAME_SYF";
// the procedures of the dictionary
inline constexpr SchemaName WordName = u"WORD_NAME";
inline constexpr SchemaName DictType = u"DICT_TYPE";
inline constexpr SchemaName WordContent = u"WORD_CONTENT";
inline constexpr SchemaName WordContent2 = u"WORD_CONTENT_2";
inline constexpr SchemaName Result = u"RESULT";
inline constexpr SchemaName Word = u"WORD";
} // namespace Field

/// What the procedures of the dictionary are asked by, beside DICT_TYPE and WORD_NAME.
namespace Parameter {
inline constexpr SchemaName ADict = u"A_DICT";
inline constexpr SchemaName MultiDict = u"MULTI_DICT";
inline constexpr SchemaName TypeDict = u"TYPE_DICT";
inline constexpr SchemaName AWord = u"A_WORD";
inline constexpr SchemaName AForm = u"A_FORM";
} // namespace Parameter

/// The most characters that a text column holds; the program counts UTF-16 units.
namespace Length {
inline constexpr int Name = 127; ///< every NAME_… of a group, a text or a mark
inline constexpr int Keyword = 127;
inline constexpr int Desc = 2047;
inline constexpr int TreeId = 31;
inline constexpr int Word = 63;
inline constexpr int Source = 255;
} // namespace Length

/// The columns of KELORA_TREE in the order in which groups are written.
const QStringList &GroupColumns();
/// The columns of KELORA_CONTENT in the order in which texts are written: the pages stand last.
const QStringList &TextColumns();
/// The columns of the pages alone: Pāli, English, Vietnamese, parallel.
const QStringList &PageColumns();
/// The columns of KELORA_SOURCE.
const QStringList &SourceColumns();
/// The columns of SUTTA_LIST that are written; the favourite mark stays null.
const QStringList &ListColumns();

/// Language modes of a passage.
namespace PageMode {
inline constexpr int Pali = 0;
inline constexpr int Vietnamese = 1;
inline constexpr int English = 2;
inline constexpr int Parallel = 10;
} // namespace PageMode

/// Name of the KELORA_CONTENT column that a mode shows; empty for an unknown mode.
QString ContentColumn(int mode);

/// Collections, in NIK_SUT. All but the last are the sibling's.
namespace Collection {
inline constexpr int Digha = 1;
inline constexpr int Majjhima = 2;
inline constexpr int Anguttara = 3;
inline constexpr int Samyutta = 4;
inline constexpr int Khuddaka = 5;
inline constexpr int Kelora = 6;
} // namespace Collection

/// Priorities of marks, in PRIORITY_FOC, the highest first.
namespace Priority {
inline constexpr int Special = 1;
inline constexpr int High = 2;
inline constexpr int Normal = 3;
inline constexpr int Low = 4;
inline constexpr int OfNewMark = High;
inline constexpr std::array All{Special, High, Normal, Low};
} // namespace Priority

/// Kinds of dictionary, in DICT_TYPE: one directed dictionary each. 0 is none.
namespace DictKind {
inline constexpr int EnglishVietnamese = 1;
inline constexpr int VietnameseEnglish = 2;
inline constexpr int FrenchVietnamese = 3;
inline constexpr int VietnameseFrench = 4;
inline constexpr int PaliVietnamese = 5;
inline constexpr int VietnamesePali = 6;
inline constexpr int EnglishPali = 7;
inline constexpr int PaliEnglish = 8;
inline constexpr std::array All{EnglishVietnamese, VietnameseEnglish, FrenchVietnamese, VietnameseFrench,
                                PaliVietnamese,    VietnamesePali,    EnglishPali,      PaliEnglish};
} // namespace DictKind

/// True for a number that is in a list of numbers, such as DictKind::All.
template <size_t Size>
constexpr bool IsOneOf(const std::array<int, Size> &numbers, int number)
{
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}
