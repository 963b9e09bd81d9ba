<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_GB">
<context>
    <name>TemplatePlugin</name>
    <message>
        <source>Peripheral</source>
        <translation>Peripheral</translation>
    </message>
    <message>
        <source>Zanther2F</source>
        <translation>Zanther2F</translation>
    </message>
</context>
<context>
    <name>gripper_peripheral_condition</name>
    <message>
        <source>Gripper step</source>
        <translation>Gripper step</translation>
    </message>
    <message>
        <source>Plug-in</source>
        <translation>Plug-in</translation>
    </message>
    <message>
        <source>Device ID</source>
        <translation>Device ID</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Force</source>
        <translation>Force</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Speed</translation>
    </message>
    <message>
        <source>Wait until the move ends</source>
        <translation>Wait until the move ends</translation>
    </message>
    <message>
        <source>Try on gripper</source>
        <translation>Try on gripper</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>Confirm</translation>
    </message>
    <message>
        <source>Condition type is not match</source>
        <translation>Condition type is not match</translation>
    </message>
    <message>
        <source>Condition saved.</source>
        <translation>Condition saved.</translation>
    </message>
    <message>
        <source>%1 plugin does not exist</source>
        <translation>%1 plugin does not exist</translation>
    </message>
    <message>
        <source>Call plugin interface failed!                            
Function name : set_2_finger_gripper_param,                            
error info : %1</source>
        <translation>Call plugin interface failed!                            
Function name : set_2_finger_gripper_param,                            
error info : %1</translation>
    </message>
</context>
</TS>
