#pragma once

class QPrintPreviewDialog;

/// Gives the toolkit's preview the pictures of the look.
void DressPreview(QPrintPreviewDialog &window);
