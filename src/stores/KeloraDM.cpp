#include "stores/KeloraDM.h"

#include "base/Messages.h"
#include "base/Velthuis.h"
#include "stores/Schema.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/DatabaseError.h"

#include <QFileInfo>

namespace {

constexpr Message canonFailure{u"Kết nối dữ liệu không thành công!\r"
                               "Vào Control Panel -> System Security -> Change User Account Control Settings\r"
                               "-> Chọn mức Notyfi thấp hơn trong cửa sổ mới hiện ra (Never Notify)\r"
                               "-> OK và khởi động lại máy!",
                               u"Can not connect to database!\r"
                               "(Control Panel -> System Security -> Change User Account Control Settings\r"
                               "-> Set lower notify (Never Notify)\r"
                               "-> OK and Restart operating system!)"};

QString OptionsPath()
{
    return QString::fromUtf16(OptionsKey);
}

// The registry's own words for its errors 1012 and 1013.
QString CannotReadText()
{
    return QStringLiteral("The configuration registry key could not be read.");
}

QString CannotWriteText()
{
    return QStringLiteral("The configuration registry key could not be written.");
}

} // namespace

QString FolderOfExecutable(const QString &exeName)
{
    const QString folder = QFileInfo(exeName).absolutePath();
    return folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

QString ClientLibraryPath(const QString &folder)
{
    return folder + QStringLiteral("libfbclient.so.2");
}

void PrepareConnection(TpFIBDatabase &database, TpFIBTransaction &transaction, const QString &file,
                       const QString &exeName)
{
    if (database.Connected())
        database.SetConnected(false);
    database.SetDBName(file);
    database.SetSQLDialect(3);
    database.DBParams() = {QStringLiteral("lc_ctype=UNICODE_FSS"), QStringLiteral("user_name=SYSDBA"),
                           QStringLiteral("password=lotuspond")};
    database.SetCharSet(QStringLiteral("UNICODE_FSS"));
    database.SetLibraryName(ClientLibraryPath(FolderOfExecutable(exeName)));
    database.SetDefaultTransaction(&transaction);
    transaction.SetDefaultDatabase(&database);
    transaction.TRParams() = {QStringLiteral("write"), QStringLiteral("isc_tpb_nowait"),
                              QStringLiteral("read_committed"), QStringLiteral("rec_version")};
}

void Connect(TpFIBDatabase &database, TpFIBTransaction &transaction, const ModuleDoors &doors)
{
    const QString file = database.DBName();
    Verdict verdict{Verdict::Manner::AsItIs};
    if (doors.verdictOn)
        verdict = doors.verdictOn(file);
    if (verdict.manner == Verdict::Manner::NotAtAll)
        throw DatabaseError(verdict.reason);
    if (verdict.manner == Verdict::Manner::AsCopy)
        database.SetDBName(verdict.copy);
    database.SetConnected(true);
    // Whoever exchanges the file after its examination gets no connection.
    if (verdict.stamp != FileStamp() && !verdict.stamp.IsSameFile(FileStamp::Of(file))) {
        database.SetConnected(false);
        throw DatabaseError(QStringLiteral("The file \"%1\" was exchanged while it was opened").arg(file));
    }
    transaction.SetActive(true);
}

TfrmKeloraDM::TfrmKeloraDM(ModuleDoors doors, QObject *owner)
    : QObject(owner), dbKelora(this), trKelora(this), m_doors(std::move(doors))
{
    setObjectName(QStringLiteral("frmKeloraDM"));
    dbKelora.setObjectName(QStringLiteral("dbKelora"));
    trKelora.setObjectName(QStringLiteral("trKelora"));
}

void TfrmKeloraDM::DataModuleCreate()
{
    AppPath = FolderOfExecutable(m_doors.exeName);
    try {
        Open();
        ReadSystemOptions();
    } catch (const std::exception &) {
        const QString text = TextOrNone(canonFailure);
        if (!text.isEmpty() && m_doors.showMessage)
            m_doors.showMessage(text);
        if (m_doors.terminate)
            m_doors.terminate();
    }
}

void TfrmKeloraDM::Open()
{
    m_niggahitas.clear();
    PrepareConnection(dbKelora, trKelora, AppPath + DatabaseFile::Canon, m_doors.exeName);
    dbKelora.SetCachePages(CanonCachePages);
    Connect(dbKelora, trKelora, m_doors);
}

void TfrmKeloraDM::ReadSystemOptions()
{
    // Read-only, so that options in a store that can't be written still apply.
    const auto registry = m_doors.createRegistry();
    registry->RootKey = RegistryRoot::CurrentUser;
    vIsFirstStart = !registry->OpenKeyReadOnly(OptionsPath());
    if (!vIsFirstStart) {
        const auto stored = ReadTogether(*registry, OptionGroup::Start);
        TakeStartOptions(stored ? *stored : DefaultsOf(OptionGroup::Start));
        if (!stored) {
            const OptionValues others = DefaultsOf(OptionGroup::WrittenOnly);
            DictionaryKind = Get<int>(others, Option::Dictionary);
            MultiDictionary = true;
            vMarginWidth = Get<int>(others, Option::MarginWidth);
        }
    }
    vOurOptions = ReadOurs(*registry); // all have their defaults without the key, too
    registry->CloseKey();

    QString startCommand;
    try {
        startCommand =
            GetRegistryData(RegistryRoot::LocalMachine, QString::fromUtf16(RunKey), QString::fromUtf16(RunValue))
                .toString();
    } catch (const std::exception &) {
        // Usually there is no entry.
    }
    vStartWin = startCommand == QLatin1Char('"') + m_doors.exeName + QLatin1Char('"');
}

void TfrmKeloraDM::TakeStartOptions(const OptionValues &values)
{
    vOpenSutta = Get<int>(values, Option::OpenSutta);
    vLastKelora = Get<int>(values, Option::LastKelora);
    vPopupActive = Get<bool>(values, Option::PopupActive);
    vPopupTime = Get<int>(values, Option::PopupTime);
    InterfaceLang = Get<int>(values, Option::InterfaceLang);
    FontName = Get<QString>(values, Option::FontName);
    vBgColor = Get<Colour>(values, Option::BgColor);
    vHighlightColor = Get<Colour>(values, Option::SeachHighlightColor);
    LastWord = Get<QString>(values, Option::LastWord);
    vLanguageSutta = Get<int>(values, Option::LanguageSutta);
}

void TfrmKeloraDM::ReadActiveStyle()
{
    const auto registry = m_doors.createRegistry();
    registry->RootKey = RegistryRoot::CurrentUser;
    if (!registry->OpenKeyReadOnly(OptionsPath()))
        return;
    const auto stored = ReadTogether(*registry, OptionGroup::Style);
    const OptionValues style = stored ? *stored : DefaultsOf(OptionGroup::Style);
    GlobalActiveStyle = Get<int>(style, Option::GlobalActiveStyle);
    GlobalActiveName = Get<QString>(style, Option::GlobalActiveName);
    registry->CloseKey();
}

template <typename Write>
void TfrmKeloraDM::WithOptionsKey(Write write)
{
    const auto registry = m_doors.createRegistry();
    registry->RootKey = RegistryRoot::CurrentUser;
    if (!registry->OpenKey(OptionsPath(), true))
        return;
    write(*registry);
    registry->CloseKey();
}

void TfrmKeloraDM::WirteActiveStyle()
{
    WithOptionsKey([](TRegistry &registry) {
        const OptionRow &number = RowOf(Option::GlobalActiveStyle);
        const OptionRow &name = RowOf(Option::GlobalActiveName);
        try {
            ::WriteOption(registry, number, GlobalActiveStyle);
            ::WriteOption(registry, name, GlobalActiveName);
        } catch (const RegistryError &) {
            ::WriteOption(registry, number, number.writeFallback.value());
            ::WriteOption(registry, name, name.writeFallback.value());
        }
    });
}

void TfrmKeloraDM::SetRegistryData(RegistryRoot root, const QString &path, const QVariant &value, RegistryType type,
                                   const QString &name)
{
    const auto registry = m_doors.createRegistry();
    registry->RootKey = root;
    if (!registry->OpenKey(path, true))
        throw RegistryError(registry->LastErrorText());
    if (type == RegistryType::Unknown)
        type = registry->GetDataType(name);
    switch (type) {
    case RegistryType::String:
        registry->WriteString(name, value.toString());
        break;
    case RegistryType::ExpandString:
        registry->WriteExpandString(name, value.toString());
        break;
    case RegistryType::Integer: {
        bool isNumber = false;
        const qlonglong number = value.toLongLong(&isNumber);
        if (!isNumber)
            throw RegistryError(CannotWriteText());
        // Colours are unsigned values of the same 32 bits.
        registry->WriteInteger(name, static_cast<int>(static_cast<quint32>(number)));
        break;
    }
    case RegistryType::Binary:
        registry->WriteBinaryData(name, value.toByteArray());
        break;
    default:
        throw RegistryError(CannotWriteText());
    }
    registry->CloseKey();
}

QVariant TfrmKeloraDM::GetRegistryData(RegistryRoot root, const QString &path, const QString &name)
{
    const auto registry = m_doors.createRegistry();
    registry->RootKey = root;
    if (!registry->OpenKeyReadOnly(path))
        throw RegistryError(registry->LastErrorText());
    QVariant value;
    switch (registry->GetDataType(name)) {
    case RegistryType::String:
    case RegistryType::ExpandString:
        value = registry->ReadString(name);
        break;
    case RegistryType::Integer:
        value = registry->ReadInteger(name);
        break;
    case RegistryType::Binary: {
        const QByteArray bytes = registry->ReadBinaryData(name);
        if (bytes.size() != registry->GetDataSize(name))
            throw RegistryError(CannotReadText());
        value = bytes;
        break;
    }
    default:
        throw RegistryError(CannotReadText());
    }
    registry->CloseKey();
    return value;
}

void TfrmKeloraDM::WriteOption(Option option, const OptionValue &value)
{
    WithOptionsKey([&](TRegistry &registry) { ::WriteOption(registry, RowOf(option), value); });
}

QChar TfrmKeloraDM::Niggahita(const QString &column)
{
    if (const auto known = m_niggahitas.find(column); known != m_niggahitas.end())
        return known->second;
    constexpr int mostPages = 20;
    constexpr int mostNames = 5000;
    NiggahitaCount count;
    try {
        TpFIBDataSet texts;
        texts.SetDatabase(&dbKelora);
        texts.SetTransaction(&trKelora);
        const bool isPage = PageColumns().contains(column);
        texts.SelectSQL() = {QStringLiteral("select first %1 N.%2 from KELORA_CONTENT N")
                                 .arg(isPage ? mostPages : mostNames)
                                 .arg(column)};
        for (texts.Open(); !texts.Eof() && !count.IsClear(); texts.Next())
            count.Add(texts.Fields().front()->AsString());
    } catch (const std::exception &) {
        return count.Letter();
    }
    return m_niggahitas[column] = count.Letter();
}
