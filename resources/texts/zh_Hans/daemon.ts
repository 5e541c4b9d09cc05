<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_Hans">
<context>
    <name></name>
    <!-- Told by the desktop when the keys that get one out of everything were held. -->
    <message id="lkeyKeyboardReleased"><source>lkeyKeyboardReleased</source><translation>键盘已释放</translation></message>
    <message id="lkeyKeyboardReleasedHow"><source>lkeyKeyboardReleasedHow</source><translation>退格键、Escape 和回车键被同时按住。在您重新选择或重新插入它之前，它的输入与没有 Quill Kestra 时相同。</translation></message>
</context>
</TS>
