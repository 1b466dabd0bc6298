#include "dictionary/Dictionary.h"

#include "base/InterfaceLanguage.h"
#include "dictionary/DictionaryDM.h"
#include "dictionary/DictionaryForms.h"
#include "dictionary/EntryFormatter.h"
#include "dictionary/SoughtForms.h"
#include "dictionary/WordRules.h"
#include "presentation/FontPolicy.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "toolkit/controls/BarButton.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"
#include "ui_Dictionary.h"

#include <QAbstractEventDispatcher>
#include <QCloseEvent>
#include <QHeaderView>

using namespace Qt::StringLiterals;

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitDictionaryTexts()
{
    Q_INIT_RESOURCE(dictionary);
}

namespace {

constexpr int SearchFontHeight = 15;
constexpr int ListWidth = 200;

QString CollectionKey()
{
    switch (CollectionMode) {
    case 1:
        return QString::fromUtf16(OptionsKey);
    case 2:
        return QString::fromUtf16(TaruneOptionsKey);
    default:
        return {};
    }
}

} // namespace

TfrmDictionary::TfrmDictionary(QWidget *parent)
    : QWidget(parent), qryWords(this), qryContents(this), qryCheckWord(this), dsWords(this), dsContents(this),
      TimerDelta(this), TimerEndScroll(this), TimerForms(this), ui(std::make_unique<Ui::frmDictionary>())
{
    InitDictionaryTexts();
    SetWindowFont(*this);
    ui->setupUi(this);
    GrowWithText(*this);
    TranslateForm(*this);
    QFont searchFont = font();
    SetFontHeight(searchFont, SearchFontHeight);
    ui->edSearchWord->setFont(searchFont);
    ui->Splitter1->setStretchFactor(1, 1);
    ui->Splitter1->setSizes({GrownPixels(ListWidth), width() - GrownPixels(ListWidth)});
    ui->gtvWords->horizontalHeader()->hide();
    CentreOnScreen(*this);

    DeclareData();
    SetUpCommands();
    SetUpSearch();
    SetUpTyping();
    SetUpStrip();
    ui->edSearchWord->setFocus();
}

TfrmDictionary::~TfrmDictionary()
{
    // The view is destroyed after its data.
    ui->gtvWords->SetDataSource(nullptr);
    qryWords.AfterScroll = nullptr;
}

void TfrmDictionary::DeclareData()
{
    qryWords.setObjectName(u"qryWords"_s);
    qryWords.SelectSQL() = QStringList{
        u"SELECT"_s, u"    e.WORD_NAME,"_s, u"    e.DICT_TYPE"_s, u"FROM"_s, u"    SP_GET_LIST_WORDS(:A_DICT) e"_s,
    };
    qryWords.RefreshSQL() = qryWords.SelectSQL();
    qryWords.AddField(Field::WordName, FieldType::WideString, Length::Word);
    qryWords.AddField(Field::DictType, FieldType::Integer);

    qryContents.setObjectName(u"qryContents"_s);
    qryContents.SelectSQL() = QStringList{
        u"select E.WORD_CONTENT, E.WORD_CONTENT_2"_s,
        u"from SP_GET_WORD_CONTENT(:DICT_TYPE, :WORD_NAME, :MULTI_DICT) E  "_s,
    };
    qryContents.RefreshSQL() = qryContents.SelectSQL();
    qryContents.AddField(Field::WordContent, FieldType::Blob);
    qryContents.AddField(Field::WordContent2, FieldType::Blob);

    qryCheckWord.setObjectName(u"qryCheckWord"_s);
    qryCheckWord.SelectSQL() = QStringList{
        u"select sp.result"_s,
        u"from sp_check_word(:TYPE_DICT, :A_WORD) sp"_s,
    };
    qryCheckWord.AddField(Field::Result, FieldType::Integer);

    for (TpFIBDataSet *dataSet : {&qryWords, &qryContents, &qryCheckWord}) {
        if (frmDictionaryDM) {
            dataSet->SetDatabase(&frmDictionaryDM->dbDictionary);
            dataSet->SetTransaction(&frmDictionaryDM->trDictionary);
        }
    }
    if (frmDictionaryDM)
        m_soughtForms = std::make_unique<SoughtForms>(frmDictionaryDM->dbDictionary, frmDictionaryDM->trDictionary);
    dsWords.setObjectName(u"dsWords"_s);
    dsWords.SetDataSet(&qryWords);
    dsContents.setObjectName(u"dsContents"_s);
    dsContents.SetDataSet(&qryContents);
    qryContents.SetDataSource(&dsWords);
    ui->gtvWords->SetDataSource(&dsWords);
    // The same word again brings its entry back, whatever has taken the entry's place.
    const auto choose = [this] {
        if (ui->ebContentWord->IsPageGone())
            ShowWordContent();
    };
    ConnectGuarded(ui->gtvWords, &QTableView::clicked, this, choose);
    ConnectGuarded(ui->gtvWords, &QTableView::activated, this, choose);
}

void TfrmDictionary::SetUpCommands()
{
    const auto wire = [this](QAction *action, auto execute) {
        ConnectGuarded(action, &QAction::triggered, this, execute);
    };
    wire(ui->acEVShow, [this] { SelectDictionary(DictKind::EnglishVietnamese, vSTextEV); });
    wire(ui->acVEShow, [this] { SelectDictionary(DictKind::VietnameseEnglish, vSTextVE); });
    wire(ui->acPaliViet, [this] { SelectDictionary(DictKind::PaliVietnamese, vSTextPV); });
    wire(ui->acVietPali, [this] { SelectDictionary(DictKind::VietnamesePali, vSTextVP); });
    // Both take the text of the first kind along.
    wire(ui->acEngPali, [this] { SelectDictionary(DictKind::EnglishPali, vSTextEV); });
    wire(ui->acPaliEng, [this] { SelectDictionary(DictKind::PaliEnglish, vSTextEV); });
    wire(ui->acCopy, [this] { ui->ebContentWord->Copy(); });
    wire(ui->acSelectAll, [this] { ui->ebContentWord->SelectAll(); });
    wire(ui->acGotoWord, [this] { acGotoWordExecute(); });
    ConnectGuarded(ui->bMultiDictionary, &QToolButton::clicked, this, [this] { bMultiDictionaryClick(); });

    SetBarMenu(*ui->btnDicts, *ui->bsiDicts);
    const auto showCaption = [this] { ui->btnDicts->setText(ui->bsiDicts->title()); };
    showCaption();
    ConnectGuarded(ui->bsiDicts->menuAction(), &QAction::changed, this, showCaption);
    SetBarAction(*ui->bCopy, *ui->acCopy);
    SetBarAction(*ui->bSelectAll, *ui->acSelectAll);
    SetBarAction(*ui->bGotoWord, *ui->acGotoWord);

    ui->ebContentWord->SetFollowsSkin(true);
    ui->ebContentWord->SetOpensLinksInside(true);
    ui->ebContentWord->SetShowsMenuWithCtrl(true);
    ui->ebContentWord->OnBeforeNavigate2 = [this](const QUrl &url) { return ebContentWordBeforeNavigate2(url); };
    ui->ebContentWord->OnShowContextMenu = [this](const QPoint &screenPoint) { ui->ppContent->popup(screenPoint); };

    UpdateCommands();
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &TfrmDictionary::UpdateCommands);
}

void TfrmDictionary::UpdateCommands()
{
    const bool hasSelection = ui->ebContentWord->HasSelectedText();
    ui->acCopy->setEnabled(hasSelection);
    ui->acGotoWord->setEnabled(hasSelection);
}

void TfrmDictionary::FormCreate(bool isForWord)
{
    vIsInit = true;
    m_isForWord = isForWord;
    vWordsDefQry = qryWords.SelectSQL();
    ui->bMultiDictionary->setChecked(MultiDictionary);
    vTypeDict = DictionaryKind;
    switch (vTypeDict) {
    case DictKind::EnglishVietnamese:
    case DictKind::VietnameseEnglish:
    case DictKind::PaliVietnamese:
    case DictKind::VietnamesePali:
    case DictKind::PaliEnglish:
        SwitchDictionary(vTypeDict, {}, GetDictionaryCaption(vTypeDict, InterfaceLang));
        break;
    case DictKind::EnglishPali:
        // Opens under the caption of its partner, until a dictionary is picked.
        SwitchDictionary(vTypeDict, {}, GetDictionaryCaption(DictKind::PaliEnglish, InterfaceLang));
        break;
    default:
        break;
    }
}

void TfrmDictionary::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        RunGuarded([this] { FormShow(); });
}

void TfrmDictionary::FormShow()
{
    SetFontQuality(*ui->edSearchWord);
    SetFontQuality(*ui->gWords);
    SetFontQuality(*ui->lstForms);
    vIsInit = false;
}

void TfrmDictionary::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    RunGuarded([this] { FormClose(); });
}

void TfrmDictionary::FormClose()
{
    TimerDelta.stop();
    TimerEndScroll.stop();
    TimerForms.stop();
    // Not being able to store this is not worth a message.
    try {
        frmKeloraDM->SetRegistryData(RegistryRoot::CurrentUser, CollectionKey(), vTypeDict, RegistryType::Integer,
                                     RowOf(Option::Dictionary).name);
        frmKeloraDM->SetRegistryData(RegistryRoot::CurrentUser, CollectionKey(), LastWord, RegistryType::String,
                                     RowOf(Option::LastWord).name);
        DictionaryKind = vTypeDict;
    } catch (const std::exception &) {
    }
}

QString TfrmDictionary::GetDictionaryCaption(int kind, int interfaceLanguage)
{
    const QString multi = MultiDictionaryCaption(kind, MultiDictionary, interfaceLanguage);
    if (!multi.isNull())
        ui->bMultiDictionary->setText(multi);
    m_namedKind = kind;
    return DictionaryCaption(kind, interfaceLanguage);
}

void TfrmDictionary::ShowCaptions()
{
    if (m_namedKind)
        GetDictionaryCaption(*m_namedKind, InterfaceLang);
    const QString caption = m_shownKind ? DictionaryCaption(*m_shownKind, InterfaceLang) : QString();
    if (!caption.isEmpty())
        ui->bsiDicts->setTitle(caption);
    if (!ui->lstForms->Words().isEmpty())
        BeginSeeking();
}

void TfrmDictionary::SelectDictionary(int kind, const QString &text)
{
    SwitchDictionary(kind, text, GetDictionaryCaption(kind, InterfaceLang));
}

void TfrmDictionary::SaveSearchText()
{
    const QString text = ui->edSearchWord->text();
    switch (vTypeDict) {
    case DictKind::EnglishVietnamese:
        vSTextEV = text;
        break;
    case DictKind::VietnameseEnglish:
        vSTextVE = text;
        break;
    case DictKind::FrenchVietnamese:
        vSTextFV = text;
        break;
    case DictKind::VietnameseFrench:
        vSTextVF = text;
        break;
    default:
        break;
    }
}

void TfrmDictionary::SwitchDictionary(int kind, const QString &text, const QString &caption)
{
    // The text refers to one of the stored texts, perhaps to the one that is stored now.
    SaveSearchText();
    vTypeDict = kind;
    ui->edSearchWord->setText(text);
    ui->bsiDicts->setTitle(caption);
    m_shownKind = m_namedKind;
    RefreshWordList();
}

void TfrmDictionary::SaveHTMLFormatted()
{
    const QByteArray entry =
        qryContents.Active() ? qryContents.FieldByName(Field::WordContent).AsBytes() : QByteArray();
    vHTMLString = FormatEntry(entry, FontName);
}

void TfrmDictionary::ShowWordContent()
{
    try {
        FIsStartPage = false;
        LastWord = qryWords.FieldByName(Field::WordName).AsString();
        ui->ebContentWord->SetHostCSS(EntryStyle());
        SaveHTMLFormatted();
        ui->ebContentWord->LoadFromString(vHTMLString, LastWord);
        FIsStartPage = true;
        TakeShown();
    } catch (const std::exception &) {
    }
}

void TfrmDictionary::bMultiDictionaryClick()
{
    MultiDictionary = ui->bMultiDictionary->isChecked();
    GetDictionaryCaption(vTypeDict, InterfaceLang);
    qryContents.Close();
    qryContents.ParamByName(Parameter::MultiDict).SetAsBoolean(MultiDictionary);
    qryContents.Open();
    ShowWordContent();
}

bool TfrmDictionary::ebContentWordBeforeNavigate2(const QUrl &url)
{
    const QString address = url.toString(QUrl::FullyEncoded);
    if (FIsStartPage || !address.contains(u"http"_s))
        return false;
    OpenDocumentLater(address);
    return true;
}
