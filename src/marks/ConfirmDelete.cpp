#include "marks/ConfirmDelete.h"

#include "stores/engine/DatabaseError.h"
#include "toolkit/program/Doors.h"

void ConfirmDelete()
{
    if (!Doors().messageBox(QStringLiteral("Thông báo"), QStringLiteral("Đồng ý xóa dữ liệu đang chọn?"),
                            BoxButtons::YesNo, BoxIcon::Question))
        throw SilentAbort();
}
