#pragma once

#include "toolkit/browser/PageScheme.h"

#include <QWebEngineProfile>

#include <memory>

/// The profile for closed pages, shared by all browser controls. It stores nothing on disk, makes no network requests,
/// and refuses permissions, downloads and whatever else a page might ask for.
class BrowserProfile : public QWebEngineProfile
{
    Q_OBJECT
public:
    /// The profile that all controls share. It exists as long as a pointer to it; pages must be deleted first.
    static std::shared_ptr<BrowserProfile> Shared();
    ~BrowserProfile() override;

    PageSchemeHandler &Pages() { return m_pages; }

private:
    BrowserProfile();

    PageSchemeHandler m_pages;
};
