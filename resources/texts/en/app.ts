<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="lkeyOK"><source>lkeyOK</source><translation>OK</translation></message>
    <message id="lkeyCancel"><source>lkeyCancel</source><translation>Cancel</translation></message>
</context>
</TS>
