#pragma once

class TindraEditor;
struct CommandLine;

/// Carries out one parsed command line on the main window: at most one main action, then the save action.
///
/// A modal dialog opened on the way holds this line up while further lines are treated inside of it, so
/// nothing of a line is kept between calls.
class CommandExecutor {
public:
    explicit CommandExecutor(TindraEditor *window) : m_window(window) {}

    void execute(const CommandLine &line) const;

private:
    void runMainAction(const CommandLine &line) const;
    void runSaveAction(const CommandLine &line) const;
    void show() const;
    void hide() const;
    void updatePreference(const CommandLine &line) const;
    void addImage(const CommandLine &line) const;

    TindraEditor *m_window;
};
