#include "toolkit/program/Guard.h"

#include "stores/engine/Refusal.h"
#include "stores/settings/Registry.h"
#include "toolkit/program/Doors.h"

namespace {

int quietGuards = 0;

void Report(const QString &text)
{
    if (quietGuards > 0)
        return;
    // The handler's wait has ended with it.
    ShowWaitCursor(false);
    Doors().messageBox(QStringLiteral("Lumivara 1.0"), text, BoxButtons::Ok, BoxIcon::Error);
}

} // namespace

bool RunGuarded(const std::function<void()> &handler)
{
    // Qt's own code may lie between nested guards and must never see an exception. So each guard reports, and routines
    // that must pass a failure on call their handlers directly.
    try {
        handler();
        return true;
    } catch (const SilentAbort &) {
    } catch (const DatabaseError &error) {
        Report(ExplainedFailure(error));
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
