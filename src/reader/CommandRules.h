#pragma once

/// The facts that enable or disable the reader's commands.
struct ReaderFacts
{
    bool hasSelection = false; ///< text is selected in a complete page
    bool isOKClients = false;
    bool isOKDictionary = false;
    bool canGoBack = false; ///< on the way that the reader has come
    bool canGoForward = false;
};

/// Whether a command may run now. Asked by the update cycle for every command whose state changes.
bool MayCopy(const ReaderFacts &facts);
bool MayMarkSelection(const ReaderFacts &facts);
bool MayBrowseMarks(const ReaderFacts &facts);
bool MayLookUp(const ReaderFacts &facts);
bool MayOpenDictionary(const ReaderFacts &facts);
bool MayGoBack(const ReaderFacts &facts);
bool MayGoForward(const ReaderFacts &facts);
