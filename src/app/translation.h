#pragma once

/// Gives the program the language that it was built for, whatever the system's is: installs the translation
/// that is built in. False, and nothing installed, in a build without one: the texts stay English. To be
/// called once, when the application object exists.
bool installProgramTranslation();

/// The same for the texts of the toolkit's own dialogs and menus, where the system has them.
void installToolkitTranslation();
