#pragma once

/// What must hold in the process before the application object exists: texts of the system in UTF-8, so that files can
/// be named in any letters, pages open to screen readers, and drawing without a graphics card.
void PrepareProcess();
