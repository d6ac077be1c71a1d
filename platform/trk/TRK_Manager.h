// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_String;
class TRK_AccessManager;
class TRK_Channel;
class TRK_ChannelCollection;
class TRK_ChannelRef;

/// A name whose value is on the time line. Variables cannot take such a name.
struct TRK_LocalVariable {
    const char *name;   // null in the record that ends a table
    int id;             // for getVariableValue
};

/// The base of a command manager: the values of the time line, and the way from a text to the value of a
/// variable or of an expression in it.
///
/// One manager is the current one, and the static look-ups ask it; setContext chooses it. The base itself owns
/// no channels: a host that has channels overrides the operations on channel references in a derived class.
/// Until it does they find nothing.
class CMD_API TRK_Manager {
public:
    /// `options` is reserved and not used: pass 0.
    explicit TRK_Manager(int options);
    TRK_Manager(const TRK_Manager &) = delete;
    TRK_Manager &operator=(const TRK_Manager &) = delete;
    /// Leaves no manager current when this one was.
    virtual ~TRK_Manager();

    /// Makes this manager the current one.
    virtual void setContext();
    /// Returns null: the base does not restrict access.
    virtual TRK_AccessManager *getAccessManager();

protected:
    /// Finds the value of `name`. Returns true, with `value` set, when this manager knows the name. A derived class
    /// may change `flags`; the base does not.
    virtual bool getVariableString(const char *name, KIT_String &value, int &flags, int thread);

public:
    /// Returns the channel of a reference; null in the base, where the following ones find nothing either.
    virtual TRK_Channel *getChRefChannel(const TRK_ChannelRef &reference, int thread);
    virtual bool isOwnerExposed(const TRK_ChannelRef &reference);
    virtual bool buildChanRef(const char *path, TRK_ChannelRef &reference, int thread);
    virtual bool buildChanRef(const TRK_Channel &channel, TRK_ChannelRef &reference);
    /// Returns a negative number, 0 or a positive one, as strcmp; the base orders references by address.
    virtual int compareChanRefs(const TRK_ChannelRef &left, const TRK_ChannelRef &right);
    virtual bool getChanRefPath(const TRK_ChannelRef &reference, KIT_String &path);

    /// Returns the manager that setContext was last called on; null when that was destroyed.
    static TRK_Manager *getCurrentManager() { return theCurrentManager; }

    /// Finds the variable `name` of the current manager, or else of the environment. Returns false, with `value`
    /// unchanged, when neither has it. Fits KIT_CshLookup, as does the next one.
    static bool lookupVariableNoThread(const char *name, KIT_String &value);

    /// Evaluates the expression `text`, which may run commands. Returns true with its result as text, or false with
    /// `value` unchanged and the error in FML::theErrNo, unless that held one before.
    static bool lookupExpressionNoThread(const char *text, KIT_String &value);

    /// Sets `out` to the `text` with its `$name`, `${name}` and backquoted expressions replaced by their values, or
    /// by nothing where there is none. A backslash makes a following `$`, backquote or backslash literal; every
    /// other character, quotes included, means itself. The expressions see the time line at
    /// `time` seconds. `what` is a sum of ExpandedPart. `collection` may be null. `text` may be null, and may be the
    /// text of `out`.
    enum ExpandedPart { EXPAND_VARIABLES = 1, EXPAND_EXPRESSIONS = 2 };
    void expandString(const char *text, KIT_String &out, double time, TRK_ChannelCollection *collection,
                      int thread, int what);

    /// Returns the time on the time line, in seconds. All threads share one time line.
    double getEvaluateTime(int thread) const;
    /// Ignores a time that is not finite.
    void setEvaluateTime(double seconds);

    /// The frames per second of the time line, 24 until a host sets others. Numbers that are not above 0, or not
    /// finite, are ignored.
    float getFramesPerSecond() const { return framesPerSecond; }
    void setFramesPerSecond(float frames);

    /// Returns the value of the local variable with that id; 0 for an unknown id.
    float getVariableValue(int id, int thread) const;

    /// Returns `value` rounded to `digits` digits after the point, 0 to 9.
    static float niceNumber(float value, int digits);

    /// Returns the names on the time line (FRAME, TIME, FPS), ended by a record with a null name.
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
