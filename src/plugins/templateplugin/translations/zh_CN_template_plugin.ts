<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>ComboBox</name>
    <message>
        <source>TCP Client</source>
        <translation>TCP 客户端</translation>
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
        <translation>确定要手动控制 IO 吗？</translation>
    </message>
</context>
<context>
    <name>GripperControlWidget</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>编号</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>已断开</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>位置</translation>
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
        <translation>夹持力</translation>
    </message>
    <message>
        <source>MIN</source>
        <translation>最小</translation>
    </message>
    <message>
        <source>MAX</source>
        <translation>最大</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>Object detected</source>
        <translation>检测到物体</translation>
    </message>
</context>
<context>
    <name>GripperSettingWidget</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <source>Zanther-Robotics Gripper</source>
        <translation>Zanther-Robotics 夹爪</translation>
    </message>
    <message>
        <source>Version 2.3.8</source>
        <translation>版本 2.3.8</translation>
    </message>
    <message>
        <source>Grippers</source>
        <translation>夹爪</translation>
    </message>
    <message>
        <source>How many gripper(s) you want to control?</source>
        <translation>要控制的夹爪数量</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>编号</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>连接类型</translation>
    </message>
    <message>
        <source>IP</source>
        <translation>IP 地址</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>端口</translation>
    </message>
    <message>
        <source>Serial port</source>
        <translation>串口</translation>
    </message>
    <message>
        <source>scan</source>
        <translation>扫描</translation>
    </message>
    <message>
        <source>          Connect         </source>
        <translation>          连接          </translation>
    </message>
    <message>
        <source>          Activate        </source>
        <translation>          激活          </translation>
    </message>
    <message>
        <source>    Disconnect   </source>
        <translation>    断开连接    </translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>已断开</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>正在连接</translation>
    </message>
    <message>
        <source>Disconnecting</source>
        <translation>正在断开</translation>
    </message>
    <message>
        <source>Reconnect automatically</source>
        <translation>自动重连</translation>
    </message>
    <message>
        <source>Update period while moving</source>
        <translation>运动时的刷新周期</translation>
    </message>
    <message>
        <source>100 ms</source>
        <translation>100 毫秒</translation>
    </message>
    <message>
        <source>50 ms</source>
        <translation>50 毫秒</translation>
    </message>
    <message>
        <source>20 ms</source>
        <translation>20 毫秒</translation>
    </message>
</context>
<context>
    <name>GripperStatusText</name>
    <message>
        <source>Undefine</source>
        <translation>未定义</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>已断开</translation>
    </message>
    <message>
        <source>Unconnected</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>Failure</source>
        <translation>连接失败</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>已连接</translation>
    </message>
    <message>
        <source>Write EXCP</source>
        <translation>写入异常</translation>
    </message>
    <message>
        <source>Read EXCP</source>
        <translation>读取异常</translation>
    </message>
    <message>
        <source>Alive EXCP</source>
        <translation>心跳异常</translation>
    </message>
    <message>
        <source>Version EXCP</source>
        <translation>版本异常</translation>
    </message>
    <message>
        <source>Device EXCP</source>
        <translation>设备异常</translation>
    </message>
    <message>
        <source>Inactivate</source>
        <translation>未激活</translation>
    </message>
    <message>
        <source>Activating</source>
        <translation>激活中</translation>
    </message>
    <message>
        <source>Activated</source>
        <translation>已激活</translation>
    </message>
    <message>
        <source>Moving</source>
        <translation>运动中</translation>
    </message>
    <message>
        <source>Turning</source>
        <translation>旋转中</translation>
    </message>
    <message>
        <source>Arrived</source>
        <translation>已到位</translation>
    </message>
    <message>
        <source>Detected</source>
        <translation>检测到物体</translation>
    </message>
    <message>
        <source>Dropped</source>
        <translation>物体掉落</translation>
    </message>
    <message>
        <source>Reconnecting</source>
        <translation>正在重连</translation>
    </message>
    <message>
        <source>Reconnecting (%1)</source>
        <translation>正在重连（%1）</translation>
    </message>
</context>
<context>
    <name>GripperWidget</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <source>Control</source>
        <translation>控制</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>设置</translation>
    </message>
</context>
<context>
    <name>MessageBox</name>
    <message>
        <source>Information</source>
        <translation>信息</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Critical</source>
        <translation>严重错误</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>询问</translation>
    </message>
</context>
<context>
    <name>TemplatePlugin</name>
    <message>
        <source>Peripheral</source>
        <translation>外设</translation>
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
        <translation>夹爪步骤</translation>
    </message>
    <message>
        <source>Plug-in</source>
        <translation>插件</translation>
    </message>
    <message>
        <source>Device ID</source>
        <translation>设备编号</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Force</source>
        <translation>夹持力</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>Wait until the move ends</source>
        <translation>等待动作完成</translation>
    </message>
    <message>
        <source>Try on gripper</source>
        <translation>在夹爪上试行</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>确认</translation>
    </message>
    <message>
        <source>Condition type is not match</source>
        <translation>条件类型不匹配</translation>
    </message>
    <message>
        <source>Condition saved.</source>
        <translation>条件已保存。</translation>
    </message>
    <message>
        <source>%1 plugin does not exist</source>
        <translation>%1 插件不存在</translation>
    </message>
    <message>
        <source>Call plugin interface failed!                            
Function name : set_2_finger_gripper_param,                            
error info : %1</source>
        <translation>调用插件接口失败！                            
函数名称 : set_2_finger_gripper_param,                            
错误信息 : %1</translation>
    </message>
    <message>
        <source>position does not match the configuration information</source>
        <translation>位置与配置信息不符</translation>
    </message>
    <message>
        <source>force does not match the configuration information</source>
        <translation>夹持力与配置信息不符</translation>
    </message>
    <message>
        <source>speed does not match the configuration information</source>
        <translation>速度与配置信息不符</translation>
    </message>
</context>
</TS>
