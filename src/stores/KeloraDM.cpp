#include "stores/KeloraDM.h"

#include "base/Colour.h"
#include "base/InterfaceLanguage.h"
#include "stores/settings/Options.h"

#include <QFileInfo>

namespace {

constexpr Colour SystemWindowColour = 0xFF000005;
constexpr Colour Yellow = 0x0000FFFF;

struct Style
{
    int number;
    QString name;
};

Style ReadDefaultStyle()
{
    return {25, QStringLiteral("Office2010Blue")};
}

/// Differs from the default for reading; users' stored choices depend on both.
Style WriteFallbackStyle()
{
    return {16, QStringLiteral("Office2007Blue")};
}

QString OptionsPath()
{
    return QString::fromUtf16(OptionsKey);
}

QString CanonFailureText(int interfaceLang)
{
    if (interfaceLang == 0)
        return QStringLiteral("Kết nối dữ liệu không thành công!\r"
                              "Vào Control Panel -> System Security -> Change User Account Control Settings\r"
                              "-> Chọn mức Notyfi thấp hơn trong cửa sổ mới hiện ra (Never Notify)\r"
                              "-> OK và khởi động lại máy!");
    if (interfaceLang == 1)
        return QStringLiteral("Can not connect to database!\r"
                              "(Control Panel -> System Security -> Change User Account Control Settings\r"
                              "-> Set lower notify (Never Notify)\r"
                              "-> OK and Restart operating system!)");
    return {};
}

// The registry's own texts for its errors 1012 and 1013.
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
#ifdef Q_OS_WIN
    return folder + QStringLiteral("fbclient.dll");
#else
    return folder + QStringLiteral("libfbclient.so.2");
#endif
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
    PrepareConnection(dbKelora, trKelora, AppPath + QStringLiteral("KELORA.FDB"), m_doors.exeName);
    dbKelora.SetCachePages(CanonCachePages);
    try {
        dbKelora.SetConnected(true);
        trKelora.SetActive(true);
        ReadSystemOptions();
    } catch (const std::exception &) {
        const QString text = CanonFailureText(InterfaceLang);
        if (!text.isEmpty() && m_doors.showMessage)
            m_doors.showMessage(text);
        if (m_doors.terminate)
            m_doors.terminate();
    }
}

void TfrmKeloraDM::ReadSystemOptions()
{
    // Read-only, so that options in a store that can't be written still apply.
    const auto registry = m_doors.createRegistry();
    registry->RootKey = RegistryRoot::CurrentUser;
    if (registry->OpenKeyReadOnly(OptionsPath())) {
        try {
            vOpenSutta = registry->ReadInteger(QStringLiteral("OpenSutta"));
            vLastKelora = registry->ReadInteger(QStringLiteral("LastKelora"));
            vPopupActive = registry->ReadBool(QStringLiteral("PopupActive"));
            vPopupTime = registry->ReadInteger(QStringLiteral("PopupTime"));
            InterfaceLang = registry->ReadInteger(QStringLiteral("InterfaceLang"));
            FontName = registry->ReadString(QStringLiteral("FontName"));
            vBgColor = static_cast<Colour>(registry->ReadInteger(QStringLiteral("BgColor")));
            vHighlightColor = static_cast<Colour>(registry->ReadInteger(QStringLiteral("SeachHighlightColor")));
            LastWord = registry->ReadString(QStringLiteral("LastWord"));
            vLanguageSutta = registry->ReadInteger(QStringLiteral("LanguageSutta"));
        } catch (const std::exception &) {
            SetDefaultOptions();
        }
        registry->CloseKey();
    }

    QString startCommand;
    try {
        startCommand = GetRegistryData(RegistryRoot::LocalMachine, QString::fromUtf16(RunKey), QStringLiteral("Kelora"))
                           .toString();
    } catch (const std::exception &) {
        // Usually there is no entry.
    }
    vStartWin = startCommand == QLatin1Char('"') + m_doors.exeName + QLatin1Char('"');
}

void TfrmKeloraDM::SetDefaultOptions()
{
    vOpenSutta = 1;
    vPopupActive = true;
    vPopupTime = 30;
    vLastKelora = 1;
    InterfaceLang = 0;
    FontName = QStringLiteral("Segoe UI");
    vBgColor = SystemWindowColour;
    vHighlightColor = Yellow;
    LastWord.clear();
    DictionaryKind = 1;
    MultiDictionary = true;
    vLanguageSutta = 1;
    vMarginWidth = 0;
}

void TfrmKeloraDM::ReadActiveStyle()
{
    const auto registry = m_doors.createRegistry();
    registry->RootKey = RegistryRoot::CurrentUser;
    if (!registry->OpenKeyReadOnly(OptionsPath()))
        return;
    try {
        GlobalActiveStyle = registry->ReadInteger(QStringLiteral("GlobalActiveStyle"));
        GlobalActiveName = registry->ReadString(QStringLiteral("GlobalActiveName"));
    } catch (const std::exception &) {
        const Style style = ReadDefaultStyle();
        GlobalActiveStyle = style.number;
        GlobalActiveName = style.name;
    }
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
        const auto write = [&registry](const Style &style) {
            registry.WriteInteger(QStringLiteral("GlobalActiveStyle"), style.number);
            registry.WriteString(QStringLiteral("GlobalActiveName"), style.name);
        };
        try {
            write({GlobalActiveStyle, GlobalActiveName});
        } catch (const RegistryError &) {
            write(WriteFallbackStyle());
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

void TfrmKeloraDM::WriteOption(const QString &name, int value)
{
    WithOptionsKey([&](TRegistry &registry) { registry.WriteInteger(name, value); });
}

void TfrmKeloraDM::WriteOption(const QString &name, const QString &value)
{
    WithOptionsKey([&](TRegistry &registry) { registry.WriteString(name, value); });
}
