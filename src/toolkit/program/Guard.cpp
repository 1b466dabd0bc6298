#include "toolkit/program/Guard.h"

#include "stores/engine/DatabaseError.h"
#include "stores/settings/Registry.h"
#include "toolkit/program/Doors.h"

namespace {

int quietGuards = 0;

void Report(const QString &text)
{
    if (quietGuards > 0)
        return;
    // Whatever a handler was waiting for has ended with it.
    ShowWaitCursor(false);
    Doors().messageBox(QStringLiteral("Lumivara 1.0"), text, BoxButtons::Ok, BoxIcon::Error);
}

} // namespace

bool RunGuarded(const std::function<void()> &handler)
{
    // A guard inside another may be reached through the toolkit's own code, which must never see an exception; so each
    // guard reports for itself, and routines that are to pass a failure on call their handlers directly.
    try {
        handler();
        return true;
    } catch (const SilentAbort &) {
    } catch (const DatabaseError &error) {
        Report(error.Text());
    } catch (const RegistryError &error) {
        Report(error.Text());
    } catch (const std::exception &error) {
        Report(QString::fromUtf8(error.what()));
    }
    return false;
}

QuietGuards::QuietGuards()
{
    ++quietGuards;
}

QuietGuards::~QuietGuards()
{
    --quietGuards;
}
