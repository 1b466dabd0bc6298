#pragma once

/// Registers the measures of one subsystem each.
void RegisterReaderMeasures();
void RegisterColourMeasures();
void RegisterProgramMeasures();
void RegisterPostMeasures();
void RegisterSearchMeasures();
void RegisterEverywhereMeasures();
void RegisterLanguageMeasures();
void RegisterDictionaryMeasures();
void RegisterDictionaryIoMeasures();
void RegisterFormsMeasures();
void RegisterMarksMeasures();
void RegisterPrintingMeasures();
void RegisterSkinMeasures();
void RegisterCanonIoMeasures();
