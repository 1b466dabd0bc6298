#include "presentation/looks/SkinObject.h"

#include <QJsonDocument>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr SkinPartRow PartRows[] = {
    {u"window"},
    {u"windowText"},
    {u"disabledText"},
    {u"base"},
    {u"alternateBase"},
    {u"text"},
    {u"placeholderText"},
    {u"selection"},
    {u"selectionText"},
    {u"inactiveSelection"},
    {u"rowHover"},
    {u"link"},
    {u"frame"},
    {u"gridLine"},
    {u"focusRing"},
    {u"bar"},
    {u"barLine"},
    {u"button"},
    {u"buttonText"},
    {u"buttonFrame"},
    {u"buttonHover"},
    {u"buttonPressed"},
    {u"buttonChecked"},
    {u"header"},
    {u"headerText"},
    {u"headerHover"},
    {u"menu"},
    {u"menuText"},
    {u"menuSelection"},
    {u"menuSelectionText"},
    {u"menuSide"},
    {u"menuFrame"},
    {u"tab"},
    {u"tabActive"},
    {u"splitter"},
    {u"scrollTrack"},
    {u"scrollThumb"},
    {u"scrollThumbHover"},
    {u"toolTip"},
    {u"toolTipText"},
    {u"toolTipFrame"},
    {u"progress"},
    {u"iconInk"},
    {u"iconAccent"},
    {u"iconFill"},
};
static_assert(std::size(PartRows) == static_cast<size_t>(SkinPart::Count));

constexpr bool NeighboursStandAbove()
{
    for (const SkinPartRow *row = PartRows; row != std::end(PartRows); ++row)
        if (!row->neighbour.empty() && std::ranges::find(PartRows, row, row->neighbour, &SkinPartRow::name) == row)
            return false;
    return true;
}
static_assert(NeighboursStandAbove());

std::optional<quint32> ReadColour(const QJsonValue &value)
{
    constexpr int length = 7; // "#rrggbb"
    const QString text = value.toString();
    const auto isHex = [](QChar character) {
        return character.unicode() < 0x80 && std::isxdigit(static_cast<unsigned char>(character.unicode()));
    };
    if (text.size() != length || text[0] != u'#' || !std::all_of(text.begin() + 1, text.end(), isHex))
        return std::nullopt;
    return 0xFF000000U | text.mid(1).toUInt(nullptr, 16);
}

int Limited(const QJsonValue &value, int least, int most, int usual)
{
    return value.isDouble() ? static_cast<int>(std::lround(std::clamp<double>(value.toDouble(), least, most))) : usual;
}

/// The elements of a simple drawing. None of them repeats, animates, styles, scripts or includes: the cost of a picture
/// must be bounded by its size.
bool IsDrawingElement(QStringView name)
{
    constexpr QStringView known[] = {u"svg",      u"g",       u"path",  u"rect", u"circle",         u"ellipse",
                                     u"line",     u"polygon", u"title", u"desc", u"linearGradient", u"radialGradient",
                                     u"polyline", u"defs",    u"stop"};
    return std::ranges::find(known, name) != std::end(known);
}

QString AttributeProblem(const QXmlStreamAttribute &attribute)
{
    const QString value = attribute.value().toString().remove(u' ');
    if (attribute.name() == u"href" || value.count("url("_L1) != value.count("url(#"_L1))
        return u"it leads elsewhere by \"%1\""_s.arg(attribute.qualifiedName());
    if (attribute.name().startsWith(u"on") || attribute.name() == u"stroke-dasharray" ||
        value.contains("stroke-dasharray"_L1))
        return u"\"%1\" is not allowed"_s.arg(attribute.qualifiedName());
    return {};
}

QString ElementProblem(const QXmlStreamReader &reader, int depth)
{
    constexpr int maxDepth = 32;
    if (reader.namespaceUri() != u"http://www.w3.org/2000/svg" || (depth == 1 && reader.name() != u"svg"))
        return u"it is no SVG"_s;
    if (depth > maxDepth)
        return u"it is nested too deeply"_s;
    if (!IsDrawingElement(reader.name()))
        return u"\"%1\" is not allowed"_s.arg(reader.name());
    const QXmlStreamAttributes attributes = reader.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (const QString problem = AttributeProblem(attribute); !problem.isEmpty())
            return problem;
    }
    return {};
}

} // namespace

std::span<const SkinPartRow> SkinPartRows()
{
    return PartRows;
}

QString SkinPartName(SkinPart part)
{
    return QStringView(PartRows[static_cast<size_t>(part)].name).toString();
}

std::optional<QJsonArray> SkinObjects(const QByteArray &bytes, QString *problem)
{
    const auto fail = [problem](const QString &text) {
        if (problem)
            *problem = text;
        return std::nullopt;
    };
    const QByteArray mark = QByteArrayLiteral("\xEF\xBB\xBF"); // some editors write it
    QJsonParseError error;
    const QJsonDocument document =
        QJsonDocument::fromJson(bytes.startsWith(mark) ? bytes.mid(mark.size()) : bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return fail(u"at byte %1: %2"_s.arg(error.offset).arg(error.errorString()));
    const QJsonObject root = document.object();
    if (root.value("format"_L1) != QString::fromUtf16(SkinFileFormat))
        return fail(u"\"format\" is not \"%1\""_s.arg(QString::fromUtf16(SkinFileFormat)));
    if (root.value("version"_L1) != SkinFileVersion)
        return fail(u"\"version\" is not %1"_s.arg(SkinFileVersion));
    if (!root.value("skins"_L1).isArray())
        return fail(u"there is no list \"skins\""_s);
    return root.value("skins"_L1).toArray();
}

bool IsSkinName(const QString &name)
{
    constexpr int longest = 64;
    const QList<uint> characters = name.toUcs4();
    return !name.isEmpty() && name.size() <= longest && name == name.trimmed() && name.isValidUtf16() &&
           std::ranges::all_of(characters, [](uint character) { return QChar::isPrint(character); });
}

std::optional<SkinFill> ReadSkinFill(const QJsonValue &value)
{
    const QJsonArray pair = value.toArray();
    if (value.isArray() && pair.size() != 2)
        return std::nullopt;
    const auto top = ReadColour(value.isArray() ? pair[0] : value);
    const auto bottom = ReadColour(value.isArray() ? pair[1] : value);
    if (!top || !bottom)
        return std::nullopt;
    return SkinFill{*top, *bottom};
}

std::optional<SkinFill> ReadPartFill(const QJsonObject &colours, QStringView part, std::span<const SkinPartRow> rows)
{
    if (const auto colour = colours.find(part); colour != colours.end())
        return ReadSkinFill(*colour);
    const auto row =
        std::ranges::find_if(rows, [part](const SkinPartRow &each) { return QStringView(each.name) == part; });
    if (row == rows.end() || row->neighbour.empty())
        return std::nullopt;
    return ReadPartFill(colours, row->neighbour, rows);
}

std::optional<Skin> ReadSkin(const QJsonObject &object)
{
    Skin skin;
    skin.name = object.value("name"_L1).toString();
    skin.displayName = object.value("displayName"_L1).toString(skin.name);
    skin.isDark = object.value("dark"_L1).toBool();
    skin.isHighContrast = object.value("highContrast"_L1).toBool();
    skin.isGlossy = object.value("glossy"_L1).toBool();
    skin.cornerRadius = Limited(object.value("cornerRadius"_L1), 0, 12, skin.cornerRadius);
    skin.lineWidth = Limited(object.value("lineWidth"_L1), 1, 3, skin.lineWidth);
    skin.focusWidth = Limited(object.value("focusWidth"_L1), 1, 4, skin.focusWidth);
    const QJsonObject colours = object.value("colours"_L1).toObject();
    for (size_t part = 0; part < skin.fills.size(); ++part) {
        const auto fill = ReadPartFill(colours, PartRows[part].name);
        if (!fill)
            return std::nullopt;
        skin.fills[part] = *fill;
    }
    const QJsonObject pictures = object.value("pictures"_L1).toObject();
    for (auto picture = pictures.begin(); picture != pictures.end(); ++picture) {
        const QByteArray svg = picture->toString().toUtf8();
        if (PictureProblem(svg).isEmpty())
            skin.pictures.insert(picture.key(), svg);
    }
    return skin;
}

QString PictureProblem(const QByteArray &svg)
{
    if (svg.size() > MaxPictureBytes)
        return u"it has more than %1 bytes"_s.arg(MaxPictureBytes);
    QXmlStreamReader reader(svg);
    int depth = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        // Entities can expand without bound, and instructions can refer to style sheets.
        if (token == QXmlStreamReader::DTD || token == QXmlStreamReader::ProcessingInstruction)
            return u"declarations and instructions are not allowed"_s;
        if (token == QXmlStreamReader::EndElement)
            --depth;
        if (token != QXmlStreamReader::StartElement)
            continue;
        if (const QString problem = ElementProblem(reader, ++depth); !problem.isEmpty())
            return problem;
    }
    return reader.hasError() ? reader.errorString() : QString();
}
