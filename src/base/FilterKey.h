#pragma once

enum class FilterKey { Nothing, NextRow, PriorRow, Reload };

/// Meaning of a key (Qt::Key) released in a filter box: Enter and Return nothing, Down next, Up prior, any other
/// reload.
FilterKey MeaningOfFilterKey(int key);
