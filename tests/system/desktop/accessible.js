// SPDX-License-Identifier: MIT
// What a program offers to assistive tools. Usage: gjs -m accessible.js PROCESS [BUTTON]
// Without a button, prints the windows of the process as JSON: name, whether it is active, the control with the focus,
// its buttons, and the text of its status line. With one, presses it.
import Atspi from 'gi://Atspi';
import system from 'system';

const [process, pressed] = system.programArgs;

function children(accessible) {
    const found = [];
    for (let index = 0; index < accessible.get_child_count(); ++index) {
        const child = accessible.get_child_at_index(index);
        if (child)
            found.push(child);
    }
    return found;
}

function has(accessible, state) {
    return accessible.get_state_set().contains(state);
}

function *shown(accessible) {
    for (const child of children(accessible)) {
        if (!has(child, Atspi.StateType.SHOWING))
            continue;
        yield child;
        yield *shown(child);
    }
}

function describe(window) {
    const controls = [...shown(window)];
    return {
        name: window.get_name(),
        isActive: has(window, Atspi.StateType.ACTIVE),
        focus: controls.find(control => has(control, Atspi.StateType.FOCUSED))?.get_role_name() ?? '',
        buttons: controls.filter(control => control.get_role() === Atspi.Role.PUSH_BUTTON)
            .map(control => control.get_name()),
        status: controls.find(control => control.get_role() === Atspi.Role.STATUS_BAR)?.get_name() ?? '',
    };
}

Atspi.init();
const programs = children(Atspi.get_desktop(0)).filter(program => program.get_process_id() === Number(process));
const windows = programs.flatMap(children).filter(window => has(window, Atspi.StateType.SHOWING));
if (pressed) {
    const buttons = windows.flatMap(window => [...shown(window)]).filter(control => control.get_name() === pressed);
    if (buttons.length !== 1)
        throw new Error(`${buttons.length} controls are called "${pressed}"`);
    buttons[0].get_action_iface().do_action(0);
} else {
    print(JSON.stringify(windows.map(describe)));
}
