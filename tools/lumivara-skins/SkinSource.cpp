#include "lumivara-skins/SkinSource.h"

#include "common/Tool.h"
#include "presentation/looks/SkinObject.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

QByteArray ReadBytes(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(path, file.errorString()));
    return file.readAll();
}

/// A source file and, once someone asked for it, its whole skin.
struct Source
{
    QString path;
    QJsonObject object;
    bool isWhole = false;
    bool isInWork = false;
};

class SourceFolder
{
public:
    explicit SourceFolder(const QString &folder) : m_dir(folder)
    {
        if (!m_dir.exists())
            throw ToolError(u"%1: there is no such folder"_s.arg(folder));
        const QStringList files = m_dir.entryList({u"*.skin"_s}, QDir::Files, QDir::NoSort);
        QStringList sorted = files;
        sorted.sort(); // by code, whatever the locale
        for (const QString &file : std::as_const(sorted))
            Take(m_dir.filePath(file));
        if (m_sources.isEmpty())
            throw ToolError(u"%1: there are no *.skin files"_s.arg(folder));
    }

    QJsonArray Skins()
    {
        QJsonArray skins;
        for (Source &source : m_sources)
            skins.append(WithPictures(source.path, Whole(source)));
        return skins;
    }

private:
    void Take(const QString &path)
    {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(ReadBytes(path), &error);
        if (error.error != QJsonParseError::NoError || !document.isObject())
            throw ToolError(
                u"%1: %2"_s.arg(path, error.error == QJsonParseError::NoError
                                          ? u"it is no object"_s
                                          : u"at byte %1: %2"_s.arg(error.offset).arg(error.errorString())));
        const QString name = document.object().value("name"_L1).toString();
        if (!IsSkinName(name))
            throw ToolError(u"%1: \"%2\" is no name for a skin"_s.arg(path, name));
        const QRegularExpression fileName(u"^[0-9]{2}-%1\\.skin$"_s.arg(QRegularExpression::escape(name)));
        if (!fileName.match(QFileInfo(path).fileName()).hasMatch())
            throw ToolError(
                u"%1: the file of %2 is called by a position of two digits, \"-%2.skin\""_s.arg(path, name));
        for (const Source &other : std::as_const(m_sources)) {
            if (other.object.value("name"_L1).toString() == name)
                throw ToolError(u"%1: %2 stands in %3 too"_s.arg(path, name, other.path));
        }
        m_sources.append({path, document.object()});
    }

    const QJsonObject &Whole(Source &source)
    {
        if (source.isWhole)
            return source.object;
        if (std::exchange(source.isInWork, true))
            throw ToolError(u"%1: it is based on itself"_s.arg(source.path));
        const QString base = source.object.value("based"_L1).toString();
        if (source.object.contains("based"_L1)) {
            QJsonObject whole = Whole(Find(base, source.path));
            Override(whole, source.object);
            whole.remove("based"_L1);
            source.object = whole;
        }
        source.isWhole = true;
        return source.object;
    }

    Source &Find(const QString &name, const QString &asker)
    {
        for (Source &source : m_sources) {
            if (source.object.value("name"_L1).toString() == name)
                return source;
        }
        throw ToolError(u"%1: there is no skin \"%2\" to be based on"_s.arg(asker, name));
    }

    /// Single values; of colours and pictures each for itself.
    static void Override(QJsonObject &whole, const QJsonObject &own)
    {
        for (auto value = own.begin(); value != own.end(); ++value) {
            QJsonObject inner = whole.value(value.key()).toObject();
            if (value->isObject() && whole.value(value.key()).isObject()) {
                Override(inner, value->toObject());
                whole.insert(value.key(), inner);
            } else {
                whole.insert(value.key(), *value);
            }
        }
    }

    QJsonObject WithPictures(const QString &path, QJsonObject skin) const
    {
        QJsonObject pictures = skin.value("pictures"_L1).toObject();
        const QJsonObject colours = skin.value("colours"_L1).toObject();
        for (auto picture = pictures.begin(); picture != pictures.end();) {
            if (picture->isNull()) { // of the skin that it is based on, not wanted here
                picture = pictures.erase(picture);
                continue;
            }
            *picture = Coloured(path, QString::fromUtf8(ReadPicture(path, picture->toString())).trimmed(), colours);
            ++picture;
        }
        skin.insert("pictures"_L1, pictures);
        return skin;
    }

    QByteArray ReadPicture(const QString &path, const QString &name) const
    {
        const QString file = m_dir.filePath(u"pictures/"_s + name);
        if (!QFileInfo(file).isFile())
            throw ToolError(u"%1: there is no picture \"%2\""_s.arg(path, name));
        return ReadBytes(file);
    }

    static QString Coloured(const QString &path, QString svg, const QJsonObject &colours)
    {
        static const QRegularExpression placeholder(u"\\{([A-Za-z]+)\\}"_s);
        qsizetype from = 0;
        for (auto match = placeholder.match(svg); match.hasMatch(); match = placeholder.match(svg, from)) {
            const auto fill = ReadPartFill(colours, match.captured(1));
            if (!fill)
                throw ToolError(u"%1: a picture wants the colour \"%2\""_s.arg(path, match.captured(1)));
            constexpr quint32 withoutAlpha = 0xFFFFFF;
            const QString colour = u"#%1"_s.arg(fill->top & withoutAlpha, 6, 16, QLatin1Char('0'));
            svg.replace(match.capturedStart(), match.capturedLength(), colour);
            from = match.capturedStart() + colour.size();
        }
        return svg;
    }

    QDir m_dir;
    QList<Source> m_sources;
};

} // namespace

QJsonArray ReadSkinSources(const QString &folder)
{
    return SourceFolder(folder).Skins();
}

QByteArray SkinFileBytes(const QJsonArray &skins)
{
    QByteArrayList lines;
    for (const QJsonValue skin : skins)
        lines += QJsonDocument(skin.toObject()).toJson(QJsonDocument::Compact);
    return "{\"format\":\"" + QString::fromUtf16(SkinFileFormat).toUtf8() +
           "\",\"version\":" + QByteArray::number(SkinFileVersion) + ",\"skins\":[\n" + lines.join(",\n") + "\n]}\n";
}
