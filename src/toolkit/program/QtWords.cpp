#include "toolkit/program/QtWords.h"

#include "base/InterfaceLanguage.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <span>

namespace {

struct Word
{
    const char *english; ///< as Qt has it, by which it asks
    const char16_t *vietnamese;
};

// Names of paper and of units stay as they are, and so do those of keys, which are printed on them.

constexpr Word buttons[]{
    {"OK", u"Đồ&ng ý"},
    {"Cancel", u"&Bỏ qua"},
    {"&Yes", u"&Có"},
    {"&No", u"&Không"},
    {"Yes to &All", u"Có cho &tất cả"},
    {"N&o to All", u"Không c&ho tất cả"},
    {"Save", u"&Lưu"},
    {"Save All", u"L&ưu tất cả"},
    {"Open", u"&Mở"},
    {"Close", u"Đón&g"},
    {"Discard", u"Không l&ưu"},
    {"Abort", u"&Dừng"},
    {"Retry", u"Thử &lại"},
    {"Ignore", u"Cứ t&iếp tục"},
    {"Help", u"Trợ giú&p"},
    {"Apply", u"Á&p dụng"},
    {"Reset", u"Đặt l&ại"},
    {"Restore Defaults", u"&Mặc định"},
};

constexpr Word messageBox[]{
    {"Show Details...", u"Hiện chi tiết..."},
    {"Hide Details...", u"Ẩn chi tiết..."},
};

constexpr Word lineEdit[]{
    {"&Undo", u"&Hoàn tác"},         {"&Redo", u"&Làm lại"}, {"Cu&t", u"Cắ&t"},
    {"&Copy", u"&Sao chép"},         {"&Paste", u"&Dán"},    {"Delete", u"&Xóa"},
    {"Select All", u"&Chọn tất cả"},
};

constexpr Word textControl[]{
    {"&Undo", u"&Hoàn tác"},
    {"&Redo", u"&Làm lại"},
    {"Cu&t", u"Cắ&t"},
    {"&Copy", u"&Sao chép"},
    {"&Paste", u"&Dán"},
    {"Delete", u"&Xóa"},
    {"Select All", u"&Chọn tất cả"},
    {"Copy &Link Location", u"Sao chép địa chỉ &liên kết"},
};

constexpr Word spinBox[]{
    {"&Select All", u"&Chọn tất cả"},
    {"&Step up", u"Tăn&g"},
    {"Step &down", u"G&iảm"},
};

constexpr Word scrollBar[]{
    {"Scroll here", u"Cuộn đến đây"},
    {"Top", u"Lên đầu"},
    {"Bottom", u"Xuống cuối"},
    {"Left edge", u"Sang mép trái"},
    {"Right edge", u"Sang mép phải"},
    {"Page up", u"Lên một trang"},
    {"Page down", u"Xuống một trang"},
    {"Page left", u"Sang trái một trang"},
    {"Page right", u"Sang phải một trang"},
    {"Scroll up", u"Cuộn lên"},
    {"Scroll down", u"Cuộn xuống"},
    {"Scroll left", u"Cuộn sang trái"},
    {"Scroll right", u"Cuộn sang phải"},
};

constexpr Word tabBar[]{
    {"Scroll Left", u"Cuộn sang trái"},
    {"Scroll Right", u"Cuộn sang phải"},
};

constexpr Word colorDialog[]{
    {"Select Color", u"Chọn màu"},
    {"&Basic colors", u"&Màu cơ bản"},
    {"&Custom colors", u"Màu &riêng"},
    {"&Add to Custom Colors", u"&Thêm vào màu riêng"},
    {"&Pick Screen Color", u"Lấy màu trên màn &hình"},
    {"Hu&e:", u"&Sắc:"},
    {"&Sat:", u"&Độ đậm:"},
    {"&Val:", u"Độ sán&g:"},
    {"&Red:", u"Đỏ:"},
    {"&Green:", u"&Xanh lục:"},
    {"Bl&ue:", u"Xanh &lam:"},
    {"A&lpha channel:", u"Kênh &alpha:"},
};

constexpr Word fileDialog[]{
    {"Open", u"Mở"},
    {"Save As", u"Lưu thành"},
    {"Find Directory", u"Tìm thư mục"},
    {"&Open", u"&Mở"},
    {"&Save", u"&Lưu"},
    {"&Choose", u"&Chọn"},
    {"Look in:", u"Tìm trong:"},
    {"Directory:", u"Thư mục:"},
    {"File &name:", u"&Tên tập tin:"},
    {"Files of type:", u"Loại tập tin:"},
    {"All Files (*)", u"Mọi tập tin (*)"},
    {"Back", u"Lùi"},
    {"Go back", u"Về thư mục trước"},
    {"Forward", u"Tới"},
    {"Go forward", u"Đến thư mục sau"},
    {"Parent Directory", u"Thư mục mẹ"},
    {"Go to the parent directory", u"Lên thư mục mẹ"},
    {"Create New Folder", u"Tạo thư mục mới"},
    {"Create a New Folder", u"Tạo một thư mục mới"},
    {"List View", u"Danh sách"},
    {"Change to list view mode", u"Xem theo danh sách"},
    {"Detail View", u"Chi tiết"},
    {"Change to detail view mode", u"Xem chi tiết"},
    {"Sidebar", u"Thanh bên"},
    {"List of places and bookmarks", u"Danh sách các nơi hay dùng"},
    {"Files", u"Tập tin"},
    {"Show ", u"Hiện "},
    {"&Rename", u"Đổi &tên"},
    {"&Delete", u"&Xóa"},
    {"Show &hidden files", u"&Hiện tập tin ẩn"},
    {"&New Folder", u"Thư mục &mới"},
    {"New Folder", u"Thư mục mới"},
    {"Remove", u"Bỏ"},
    {"Recent Places", u"Nơi gần đây"},
    {"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
     u"%1\nKhông tìm thấy thư mục.\nHãy xem lại tên thư mục."},
    {"%1\nFile not found.\nPlease verify the correct file name was given.",
     u"%1\nKhông tìm thấy tập tin.\nHãy xem lại tên tập tin."},
    {"%1 already exists.\nDo you want to replace it?", u"%1 đã có sẵn.\nGhi đè lên tập tin này?"},
    {"'%1' is write protected.\nDo you want to delete it anyway?", u"'%1' được bảo vệ, không cho ghi.\nVẫn xóa?"},
    {"Are you sure you want to delete '%1'?", u"Đồng ý xóa '%1'?"},
    {"Could not delete directory.", u"Không xóa được thư mục."},
};

constexpr Word fileSystemModel[]{
    {"Computer", u"Máy tính"}, {"Name", u"Tên"}, {"Size", u"Cỡ"}, {"Type", u"Loại"}, {"Date Modified", u"Ngày sửa"},
};

constexpr Word fileKinds[]{
    {"Drive", u"Ổ đĩa"},
    {"Folder", u"Thư mục"},
    {"Unknown", u"Không rõ"},
};

constexpr Word previewDialog[]{
    {"Print Preview", u"Xem trước khi in"},
    {"Fit width", u"Vừa chiều rộng"},
    {"Fit page", u"Vừa trang"},
    {"Zoom out", u"Thu nhỏ"},
    {"Zoom in", u"Phóng to"},
    {"Portrait", u"Khổ dọc"},
    {"Landscape", u"Khổ ngang"},
    {"First page", u"Trang đầu"},
    {"Previous page", u"Trang trước"},
    {"Next page", u"Trang sau"},
    {"Last page", u"Trang cuối"},
    {"Show single page", u"Một trang"},
    {"Show facing pages", u"Hai trang đối nhau"},
    {"Show overview of all pages", u"Mọi trang"},
    {"Page setup", u"Thiết lập trang"},
    {"Page Setup", u"Thiết lập trang"},
    {"Print", u"In"},
};

constexpr Word pageSetup[]{
    {"Paper", u"Giấy"},
    {"Page size:", u"Khổ giấy:"},
    {"Custom", u"Tùy chọn"},
    {"Width:", u"Chiều rộng:"},
    {"Height:", u"Chiều cao:"},
    {"Paper source:", u"Nguồn giấy:"},
    {"Millimeters (mm)", u"Milimét (mm)"},
    {"Inches (in)", u"Inch (in)"},
    {"Points (pt)", u"Điểm (pt)"},
    {"Orientation", u"Hướng giấy"},
    {"Portrait", u"Khổ dọc"},
    {"Landscape", u"Khổ ngang"},
    {"Reverse landscape", u"Khổ ngang, lật ngược"},
    {"Reverse portrait", u"Khổ dọc, lật ngược"},
    {"Margins", u"Lề"},
    {"top margin", u"lề trên"},
    {"bottom margin", u"lề dưới"},
    {"left margin", u"lề trái"},
    {"right margin", u"lề phải"},
    {"Page Layout", u"Cách xếp trang"},
    {"Page order:", u"Thứ tự trang:"},
    {"Pages per sheet:", u"Số trang trên một tờ:"},
};

constexpr Word pageSetupDialog[]{
    {"Page Setup", u"Thiết lập trang"},
};

constexpr Word pageSizes[]{
    {"Custom (%1mm x %2mm)", u"Tùy chọn (%1mm x %2mm)"}, {"Custom (%1pt x %2pt)", u"Tùy chọn (%1pt x %2pt)"},
    {"Custom (%1in x %2in)", u"Tùy chọn (%1in x %2in)"}, {"Custom (%1pc x %2pc)", u"Tùy chọn (%1pc x %2pc)"},
    {"Custom (%1DD x %2DD)", u"Tùy chọn (%1DD x %2DD)"}, {"Custom (%1CC x %2CC)", u"Tùy chọn (%1CC x %2CC)"},
};

constexpr Word printDialog[]{
    {"Print", u"In"},
    {"&Print", u"&In"},
    {"&Options >>", u"&Tùy chọn >>"},
    {"&Options <<", u"&Tùy chọn <<"},
    {"Print to File (PDF)", u"In ra tập tin (PDF)"},
    {"Print To File ...", u"In ra tập tin..."},
    {"Local file", u"Tập tin trên máy"},
    {"Write PDF file", u"Ghi tập tin PDF"},
    {"All Pages", u"Mọi trang"},
    {"Odd Pages", u"Trang lẻ"},
    {"Even Pages", u"Trang chẵn"},
    {"Left to Right, Top to Bottom", u"Trái sang phải, trên xuống dưới"},
    {"Left to Right, Bottom to Top", u"Trái sang phải, dưới lên trên"},
    {"Right to Left, Bottom to Top", u"Phải sang trái, dưới lên trên"},
    {"Right to Left, Top to Bottom", u"Phải sang trái, trên xuống dưới"},
    {"Bottom to Top, Left to Right", u"Dưới lên trên, trái sang phải"},
    {"Bottom to Top, Right to Left", u"Dưới lên trên, phải sang trái"},
    {"Top to Bottom, Left to Right", u"Trên xuống dưới, trái sang phải"},
    {"Top to Bottom, Right to Left", u"Trên xuống dưới, phải sang trái"},
    {"%1 is a directory.\nPlease choose a different file name.", u"%1 là một thư mục.\nHãy chọn tên tập tin khác."},
    {"%1 already exists.\nDo you want to overwrite it?", u"%1 đã có sẵn.\nGhi đè lên tập tin này?"},
    {"File %1 is not writable.\nPlease choose a different file name.",
     u"Không ghi được tập tin %1.\nHãy chọn tên tập tin khác."},
    {"Options 'Pages Per Sheet' and 'Page Set' cannot be used together.\nPlease turn one of those options off.",
     u"Không dùng được cả 'Số trang trên một tờ' và 'Nhóm trang' cùng lúc.\nHãy bỏ một trong hai."},
    {"Invalid Pages Definition", u"Số trang không hợp lệ"},
    {"%1 does not follow the correct syntax. Please use ',' to separate ranges and pages, '-' to define ranges and "
     "make "
     "sure ranges do not intersect with each other.",
     u"%1 không đúng cách viết. Hãy dùng ',' giữa các trang hay khoảng trang, '-' trong một khoảng trang, và đừng để "
     u"các "
     "khoảng trùng nhau."},
    {"Duplex Settings Conflicts", u"Thiết lập in hai mặt không khớp"},
    {"There are conflicts in duplex settings. Do you want to fix them?",
     u"Các thiết lập in hai mặt không khớp nhau. Sửa lại?"},
};

constexpr Word printWidget[]{
    {"Printer", u"Máy in"},    {"&Name:", u"Tê&n:"}, {"P&roperties", u"Th&uộc tính"},    {"Location:", u"Nơi đặt:"},
    {"Preview", u"Xem trước"}, {"Type:", u"Loại:"},  {"Output &file:", u"R&a tập tin:"},
};

constexpr Word printSettings[]{
    {"Copies", u"Số bản"},
    {"Print range", u"Phạm vi in"},
    {"Print all", u"In tất cả"},
    {"Pages from", u"Từ trang"},
    {"to", u"đến"},
    {"Pages", u"Các trang"},
    {"Specify pages or ranges separated by commas. Ranges are specified by two numbers separated by a hyphen. E.g: "
     "3,5-7,9 prints pages 3, 5, 6, 7 and 9.",
     u"Các trang hay khoảng trang, cách nhau bằng dấu phẩy. Khoảng trang là hai số cách nhau bằng dấu gạch nối. Ví dụ: "
     "3,5-7,9 là in trang 3, 5, 6, 7 và 9."},
    {"Current Page", u"Trang này"},
    {"Selection", u"Phần đang chọn"},
    {"Page Set:", u"Nhóm trang:"},
    {"Output Settings", u"Thiết lập bản in"},
    {"Copies:", u"Số bản:"},
    {"Collate", u"Xếp theo bộ"},
    {"Reverse", u"Ngược thứ tự"},
    {"Options", u"Tùy chọn"},
    {"Color Mode", u"Màu"},
    {"Color", u"Có màu"},
    {"Grayscale", u"Thang xám"},
    {"Double Sided Printing", u"In hai mặt"},
    {"Off", u"Không"},
    {"Long side binding", u"Đóng theo cạnh dài"},
    {"Short side binding", u"Đóng theo cạnh ngắn"},
};

constexpr Word printerProperties[]{
    {"Printer Properties", u"Thuộc tính máy in"},
    {"Job Options", u"Tùy chọn việc in"},
    {"Page Setup Conflicts", u"Thiết lập trang không khớp"},
    {"There are conflicts in page setup options. Do you want to fix them?",
     u"Các thiết lập trang không khớp nhau. Sửa lại?"},
    {"Advanced Option Conflicts", u"Tùy chọn nâng cao không khớp"},
    {"There are conflicts in some advanced options. Do you want to fix them?",
     u"Vài tùy chọn nâng cao không khớp nhau. Sửa lại?"},
};

constexpr Word printerPropertiesPages[]{
    {"Page", u"Trang"},
    {"Advanced", u"Nâng cao"},
    {"There are conflicts in some options. Please fix them.", u"Vài tùy chọn không khớp nhau. Hãy sửa lại."},
};

constexpr Word printJob[]{
    {"Job", u"Việc in"},
    {"Job Control", u"Điều khiển việc in"},
    {"Scheduled printing:", u"Hẹn giờ in:"},
    {"Print Immediately", u"In ngay"},
    {"Hold Indefinitely", u"Giữ lại, chưa hẹn"},
    {"Day (06:00 to 17:59)", u"Ban ngày (06:00 đến 17:59)"},
    {"Night (18:00 to 05:59)", u"Ban đêm (18:00 đến 05:59)"},
    {"Second Shift (16:00 to 23:59)", u"Ca hai (16:00 đến 23:59)"},
    {"Third Shift (00:00 to 07:59)", u"Ca ba (00:00 đến 07:59)"},
    {"Weekend (Saturday to Sunday)", u"Cuối tuần (thứ bảy và chủ nhật)"},
    {"Specific Time", u"Giờ nhất định"},
    {"Billing information:", u"Thông tin thanh toán:"},
    {"Job priority:", u"Mức ưu tiên:"},
    {"Banner Pages", u"Trang bìa"},
    {"Start:", u"Đầu:"},
    {"End:", u"Cuối:"},
    {"None", u"Không có"},
    {"Standard", u"Thường"},
    {"Unclassified", u"Không mật"},
    {"Confidential", u"Nội bộ"},
    {"Classified", u"Mật"},
    {"Secret", u"Tối mật"},
    {"Top Secret", u"Tuyệt mật"},
};

/// What a file that can't be written has to say.
constexpr Word savedFileErrors[]{
    {"Existing file %1 is not writable", u"Không ghi được lên tập tin %1 đã có"},
    {"Filename refers to a directory", u"Tên này là của một thư mục"},
};

struct Context
{
    const char *name;
    std::span<const Word> words;
};

constexpr Context contexts[]{
    {"QAbstractFileIconProvider", fileKinds},
    {"QAbstractSpinBox", spinBox},
    {"QColorDialog", colorDialog},
    {"QCupsJobWidget", printJob},
    {"QFileDialog", fileDialog},
    {"QFileSystemModel", fileSystemModel},
    {"QLineEdit", lineEdit},
    {"QMessageBox", messageBox},
    {"QPageSetupDialog", pageSetupDialog},
    {"QPageSetupWidget", pageSetup},
    {"QPageSize", pageSizes},
    {"QPlatformTheme", buttons},
    {"QPrintDialog", printDialog},
    {"QPrintPreviewDialog", previewDialog},
    {"QPrintPropertiesDialog", printerProperties},
    {"QPrintPropertiesWidget", printerPropertiesPages},
    {"QPrintSettingsOutput", printSettings},
    {"QPrintWidget", printWidget},
    {"QSaveFile", savedFileErrors},
    {"QScrollBar", scrollBar},
    {"QTabBar", tabBar},
    {"QWidgetTextControl", textControl},
};

} // namespace

QString QtWords::translate(const char *context, const char *source, const char *, int) const
{
    constexpr int vietnamese = 0;
    if (InterfaceLang != vietnamese)
        return {};
    const auto *group =
        std::ranges::find_if(contexts, [&](const Context &one) { return qstrcmp(one.name, context) == 0; });
    if (group == std::end(contexts))
        return {};
    const auto word =
        std::ranges::find_if(group->words, [&](const Word &one) { return qstrcmp(one.english, source) == 0; });
    return word == group->words.end() ? QString() : QString::fromUtf16(word->vietnamese);
}

void ShowQtWords()
{
    static int shownLanguage = InterfaceLang;
    auto *words = qApp->findChild<QtWords *>(QString(), Qt::FindDirectChildrenOnly);
    if (!words) {
        words = new QtWords(qApp);
        QCoreApplication::installTranslator(words); // tells the windows, too
    } else if (shownLanguage != InterfaceLang) {
        QEvent change(QEvent::LanguageChange);
        QCoreApplication::sendEvent(qApp, &change);
    }
    shownLanguage = InterfaceLang;
}
