#include "marks/ConfirmDelete.h"

#include "stores/DatabaseError.h"
#include "toolkit/Doors.h"

void ConfirmDelete()
{
    if (!Doors().messageBox(QStringLiteral("Thông báo"), QStringLiteral("Đồng ý xóa dữ liệu đang chọn?"),
                            BoxButtons::YesNo, BoxIcon::Question))
        throw SilentAbort();
}
