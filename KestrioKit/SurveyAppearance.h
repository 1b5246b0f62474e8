#pragma once

/// The colours in which surveys are shown, see `Kestrio::setAppearance()`. In `dark` and `system`,
/// text has a contrast of at least 4.5:1, and borders, dots, check marks and focus rings have at
/// least 3:1 (WCAG 2.1). The service's accent colour is lightened or darkened until that holds.
enum class SurveyAppearance : int {
    /// A white card, in the accent colour that the service gives, unchanged. The default.
    light = 0,
    /// A dark card.
    dark = 1,
    /// The colours of the application's palette, also those of a high-contrast one. A survey that
    /// is shown follows when the palette or the application's font changes.
    system = 2,
    /// `dark` when the service's configuration has "dark" as its "theme", otherwise `light`.
    service = 3,
};
