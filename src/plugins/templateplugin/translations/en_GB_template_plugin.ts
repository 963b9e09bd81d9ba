<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_GB">
<context>
    <name>ComboBox</name>
    <message>
        <source>TCP Client</source>
        <translation>TCP Client</translation>
    </message>
    <message>
        <source>USB</source>
        <translation>USB</translation>
    </message>
</context>
<context>
    <name>Common</name>
    <message>
        <source>Are you sure you want to control IO?</source>
        <translation>Are you sure you want to control the I/O?</translation>
    </message>
</context>
<context>
    <name>GripperControlWidget</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>Disconnected</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>−</source>
        <translation>−</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Force</source>
        <translation>Force</translation>
    </message>
    <message>
        <source>MIN</source>
        <translation>MIN</translation>
    </message>
    <message>
        <source>MAX</source>
        <translation>MAX</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Speed</translation>
    </message>
    <message>
        <source>Object detected</source>
        <translation>Object detected</translation>
    </message>
</context>
<context>
    <name>GripperSettingWidget</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>Zanther-Robotics Gripper</source>
        <translation>Zanther-Robotics Gripper</translation>
    </message>
    <message>
        <source>Version 2.3.8</source>
        <translation>Version 2.3.8</translation>
    </message>
    <message>
        <source>Grippers</source>
        <translation>Grippers</translation>
    </message>
    <message>
        <source>How many gripper(s) you want to control?</source>
        <translation>How many grippers do you want to control?</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>Connection</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>IP</source>
        <translation>IP address</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>Serial port</source>
        <translation>Serial port</translation>
    </message>
    <message>
        <source>scan</source>
        <translation>Scan</translation>
    </message>
    <message>
        <source>          Connect         </source>
        <translation>          Connect         </translation>
    </message>
    <message>
        <source>          Activate        </source>
        <translation>          Activate        </translation>
    </message>
    <message>
        <source>    Disconnect   </source>
        <translation>    Disconnect   </translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>Disconnected</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>Connecting</translation>
    </message>
    <message>
        <source>Disconnecting</source>
        <translation>Disconnecting</translation>
    </message>
    <message>
        <source>Reconnect automatically</source>
        <translation>Reconnect automatically</translation>
    </message>
    <message>
        <source>Update period while moving</source>
        <translation>Update period while moving</translation>
    </message>
    <message>
        <source>100 ms</source>
        <translation>100 ms</translation>
    </message>
    <message>
        <source>50 ms</source>
        <translation>50 ms</translation>
    </message>
    <message>
        <source>20 ms</source>
        <translation>20 ms</translation>
    </message>
</context>
<context>
    <name>GripperStatusText</name>
    <message>
        <source>Undefine</source>
        <translation>Undefined</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>Disconnected</translation>
    </message>
    <message>
        <source>Unconnected</source>
        <translation>Not connected</translation>
    </message>
    <message>
        <source>Failure</source>
        <translation>Failure</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Connected</translation>
    </message>
    <message>
        <source>Write EXCP</source>
        <translation>Write fault</translation>
    </message>
    <message>
        <source>Read EXCP</source>
        <translation>Read fault</translation>
    </message>
    <message>
        <source>Alive EXCP</source>
        <translation>Heartbeat fault</translation>
    </message>
    <message>
        <source>Version EXCP</source>
        <translation>Version fault</translation>
    </message>
    <message>
        <source>Device EXCP</source>
        <translation>Device fault</translation>
    </message>
    <message>
        <source>Inactivate</source>
        <translation>Inactive</translation>
    </message>
    <message>
        <source>Activating</source>
        <translation>Activating</translation>
    </message>
    <message>
        <source>Activated</source>
        <translation>Activated</translation>
    </message>
    <message>
        <source>Moving</source>
        <translation>Moving</translation>
    </message>
    <message>
        <source>Turning</source>
        <translation>Turning</translation>
    </message>
    <message>
        <source>Arrived</source>
        <translation>Arrived</translation>
    </message>
    <message>
        <source>Detected</source>
        <translation>Object detected</translation>
    </message>
    <message>
        <source>Dropped</source>
        <translation>Object dropped</translation>
    </message>
    <message>
        <source>Reconnecting</source>
        <translation>Reconnecting</translation>
    </message>
    <message>
        <source>Reconnecting (%1)</source>
        <translation>Reconnecting (%1)</translation>
    </message>
</context>
<context>
    <name>GripperWidget</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>Control</source>
        <translation>Control</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Setting</translation>
    </message>
</context>
<context>
    <name>MessageBox</name>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>Critical</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Question</translation>
    </message>
</context>
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
        <translation>Condition type does not match</translation>
    </message>
    <message>
        <source>Condition saved.</source>
        <translation>Condition saved.</translation>
    </message>
    <message>
        <source>%1 plugin does not exist</source>
        <translation>%1 plug-in does not exist</translation>
    </message>
    <message>
        <source>Call plugin interface failed!                            
Function name : set_2_finger_gripper_param,                            
error info : %1</source>
        <translation>Call plug-in interface failed!                            
Function name : set_2_finger_gripper_param,                            
error info : %1</translation>
    </message>
    <message>
        <source>position does not match the configuration information</source>
        <translation>Position does not match the configuration</translation>
    </message>
    <message>
        <source>force does not match the configuration information</source>
        <translation>Force does not match the configuration</translation>
    </message>
    <message>
        <source>speed does not match the configuration information</source>
        <translation>Speed does not match the configuration</translation>
    </message>
</context>
</TS>
