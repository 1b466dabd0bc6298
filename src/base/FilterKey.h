#pragma once

enum class FilterKey { Nothing, NextRow, PriorRow, Reload };

/// Meaning of a key released in a box that filters a list, by Qt::Key: Enter and Return nothing, Down, Up, else reload.
FilterKey MeaningOfFilterKey(int key);
