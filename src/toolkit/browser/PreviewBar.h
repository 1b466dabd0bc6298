#pragma once

class QPrintPreviewDialog;

/// Gives the toolkit's preview the pictures of the look and hints in the interface's language.
void DressPreview(QPrintPreviewDialog &window);
