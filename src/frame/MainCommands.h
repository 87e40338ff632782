#pragma once
// Connects the routines of every subsystem to the keys of the main window's
// commands (see frame/CommandRegistry.h for the keys).

// Registers every command that exists; called by the main window when it is
// made. Registering again replaces, so calling it twice does no harm.
void RegisterMainCommands();
