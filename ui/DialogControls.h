// The numbers of the controls in the program's dialogs. The resource compiler reads this file too, so they are macros.
#pragma once

#define KORB_CONTROL_NEXT 1001      // default button; a page that is accepted ends its dialog with this number
#define KORB_CONTROL_CANCEL 1003    // second button
#define KORB_CONTROL_PAGE 1005      // text of a page
#define KORB_CONTROL_BAR_PLACE 1007 // frame that the progress bar covers
#define KORB_CONTROL_LABEL 1009     // line above everything else
#define KORB_CONTROL_STEP 1011      // what happens just now
#define KORB_CONTROL_BROWSE 1013
#define KORB_CONTROL_DIRECTORY 1015
#define KORB_CONTROL_LANGUAGES 1017
