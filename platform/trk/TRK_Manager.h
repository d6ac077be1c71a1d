// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_String;
class TRK_AccessManager;
class TRK_Channel;
class TRK_ChannelCollection;
class TRK_ChannelRef;

/// One name that the manager answers itself, from the time line. Variables cannot take such a name.
struct TRK_LocalVariable {
    const char *name;   // null in the record that ends a table
    int id;             // what getVariableValue wants
};

/// The base of a command manager: the values of the time line, and the way from a text to the value of a
/// variable or of an expression in it.
///
/// One manager is the current one, and the static look-ups ask it; setContext chooses it. The base itself owns
/// no channels: the operations on channel references stand here so that a host which has channels can answer
/// them in a derived class, and they find nothing until it does.
class CMD_API TRK_Manager {
public:
    /// `options` is kept for hosts that derive from the class; 0 is the only value with a meaning so far.
    explicit TRK_Manager(int options);
    TRK_Manager(const TRK_Manager &) = delete;
    TRK_Manager &operator=(const TRK_Manager &) = delete;
    /// Leaves no manager current when this one was.
    virtual ~TRK_Manager();

    /// Makes this manager the current one.
    virtual void setContext();
    /// Null: the base restricts access to nothing.
    virtual TRK_AccessManager *getAccessManager();

protected:
    /// The text of the value called `name`: true, with `value` filled, when this manager knows the name.
    /// `flags` may be changed by a class that has more to tell of the value; the base leaves it alone.
    virtual bool getVariableString(const char *name, KIT_String &value, int &flags, int thread);

public:
    /// The channel that a reference stands for; null in the base, as the following ones find nothing.
    virtual TRK_Channel *getChRefChannel(const TRK_ChannelRef &reference, int thread);
    virtual bool isOwnerExposed(const TRK_ChannelRef &reference);
    virtual bool buildChanRef(const char *path, TRK_ChannelRef &reference, int thread);
    virtual bool buildChanRef(const TRK_Channel &channel, TRK_ChannelRef &reference);
    /// Negative, 0 or positive, an order of references; the base orders them by address.
    virtual int compareChanRefs(const TRK_ChannelRef &left, const TRK_ChannelRef &right);
    virtual bool getChanRefPath(const TRK_ChannelRef &reference, KIT_String &path);

    /// The manager that setContext was last called on; null when there is none any more.
    static TRK_Manager *getCurrentManager() { return theCurrentManager; }

    /// The text of the variable `name` of the current manager, or else of the process environment. False, with
    /// `value` untouched, when neither has it. Fits KIT_CshLookup, as does the next one.
    static bool lookupVariableNoThread(const char *name, KIT_String &value);

    /// The result of the expression `text` as text. The expression may run commands. When it fails the result is
    /// false, `value` is untouched, and FML::theErrNo holds the number of the error unless it held one before.
    static bool lookupExpressionNoThread(const char *text, KIT_String &value);

    /// Puts into `out` the `text` with its `$name`, `${name}` and backquoted expressions replaced by their
    /// values; what has no value gives nothing. A backslash makes a following `$`, backquote or backslash
    /// literal; every other character, quotes included, stands for itself. The expressions see the time line at
    /// `time` seconds. `what` is a sum of ExpandedPart. `collection` may be null. `text` may be null, and may be the
    /// text of `out`.
    enum ExpandedPart { EXPAND_VARIABLES = 1, EXPAND_EXPRESSIONS = 2 };
    void expandString(const char *text, KIT_String &out, double time, TRK_ChannelCollection *collection,
                      int thread, int what);

    /// The place on the time line, in seconds. All threads share one time line.
    double getEvaluateTime(int thread) const;
    /// What is not finite is ignored.
    void setEvaluateTime(double seconds);

    /// Frames per second of the time line, 24 until a host says otherwise. What is not above 0, or not finite,
    /// is ignored.
    float getFramesPerSecond() const { return framesPerSecond; }
    void setFramesPerSecond(float frames);

    /// The value behind the id of a local variable; 0 for an id that is none.
    float getVariableValue(int id, int thread) const;

    /// `value` rounded to `digits` places behind the point, 0 to 9.
    static float niceNumber(float value, int digits);

    /// The names that the manager answers itself (FRAME, TIME, FPS), ended by a record with a null name.
    static const TRK_LocalVariable *getLocalVariableTable();

    /// Lets expressions see the time line of the current manager. Calling it again changes nothing.
    static void initExpressionLibrary();
    /// Lets expressions see the variables of the current manager. Calling it again changes nothing.
    static void initLibraryGlue();

private:
    class Expansion;

    static bool lookupManagerVariable(const char *name, KIT_String &value, int thread);
    bool getLocalVariable(const char *name, KIT_String &value) const;
    double localValue(int id) const;

    static TRK_Manager *theCurrentManager;   // borrowed
    static unsigned theContextChoices;       // calls of setContext

    double evaluateTime = 0;
    float framesPerSecond = 24;
};
