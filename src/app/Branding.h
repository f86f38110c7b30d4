#pragma once

#include <QString>

// The vendor's names and addresses, assigned once at start-up and only read afterwards.
// An empty address removes what would lead to it (a Help entry, the About box's logo button).
struct Branding {
    static inline QString BrandVendor;     // ends in a blank: it stands before "Tessarelle"
    static inline QString BrandUpdateKey;  // folder of this product on the update server
    static inline QString BrandWebName;    // host name shown in the About box
    static inline QString BrandSupportUrl; // Help, Online Support
    static inline QString BrandFaqUrl;     // Help, Frequently Asked Questions
    static inline QString BrandQuickstart; // relative to the install directory
    static inline QString BrandManual;     // relative to the install directory
    static inline QString BrandLogoUrl;    // About box logo button

    static void Assign();
};
