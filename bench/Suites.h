#pragma once

/// Registers the measures of one subsystem each.
void RegisterReaderMeasures();
void RegisterProgramMeasures();
void RegisterSearchMeasures();
