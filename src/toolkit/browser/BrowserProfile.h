#pragma once

#include "toolkit/browser/PageScheme.h"

#include <QWebEngineProfile>

#include <memory>

/// The engine's settings for closed pages, shared by all browser controls. Nothing is kept on disk, nothing is asked of
/// the network, and what a page might ask of the engine is refused.
class BrowserProfile : public QWebEngineProfile
{
    Q_OBJECT
public:
    /// The profile that all controls share. It lives as long as someone holds it: pages must go before it.
    static std::shared_ptr<BrowserProfile> Shared();
    ~BrowserProfile() override;

    PageSchemeHandler &Pages() { return m_pages; }

private:
    BrowserProfile();

    PageSchemeHandler m_pages;
};
