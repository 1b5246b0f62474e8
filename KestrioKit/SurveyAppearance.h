#pragma once

/// The colours of surveys, see `Kestrio::setAppearance()`. In `dark` and `system`, text has a
/// contrast of at least 4.5:1, and borders, dots, check marks and focus rings have at least 3:1
/// (WCAG 2.1). The library lightens or darkens the service's accent colour until it reaches these
/// contrasts.
enum class SurveyAppearance : int {
    /// A white card with the service's accent colour, unchanged. The default.
    light = 0,
    /// A dark card.
    dark = 1,
    /// The colours of the application's palette, including a high-contrast palette. A survey on
    /// screen follows changes of the application's palette and font.
    system = 2,
    /// `dark` if the "theme" in the service's configuration is "dark", otherwise `light`.
    service = 3,
};
