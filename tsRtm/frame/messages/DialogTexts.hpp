#pragma once
// How the prompt of a task dialog is taken apart, and the texts it brings itself.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

struct PromptParts {
    Text headline, body;
};

// "\@" is a sign of the text; the first other "@" ends the headline, but for one at the very beginning.
// Without one the first CR ends it.
PromptParts splitPrompt(TextView prompt);

// Wraps each address "http:..." and "https:..." up to the next white space as a link, in a text that holds
// none yet.
Text withLinks(TextView body);

// What stands beside the box to tick, by the button set of the dialog.
TextView dontShowAgainText(int32 buttonSet) noexcept;

// The library's own picture for questions, SVG.
BytesView RtmIcon() noexcept;

}  // namespace tsRtm
