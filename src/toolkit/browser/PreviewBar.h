#pragma once

class QPrintPreviewDialog;

/// Gives Qt's print preview our pictures, and hints in the interface's language.
void DressPreview(QPrintPreviewDialog &window);
