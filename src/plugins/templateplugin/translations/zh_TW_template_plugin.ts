<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW">
<context>
    <name>ComboBox</name>
    <message>
        <source>TCP Client</source>
        <translation>TCP 用戶端</translation>
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
        <translation>確定要手動控制 I/O 嗎？</translation>
    </message>
</context>
<context>
    <name>GripperControlWidget</name>
    <message>
        <source>Form</source>
        <translation>表單</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>編號</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>狀態</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>已斷線</translation>
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
        <translation>夾持力</translation>
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
        <translation>偵測到物件</translation>
    </message>
</context>
<context>
    <name>GripperSettingWidget</name>
    <message>
        <source>Form</source>
        <translation>表單</translation>
    </message>
    <message>
        <source>Zanther-Robotics Gripper</source>
        <translation>Zanther-Robotics 夾爪</translation>
    </message>
    <message>
        <source>Version 2.3.8</source>
        <translation>版本 2.3.8</translation>
    </message>
    <message>
        <source>Grippers</source>
        <translation>夾爪</translation>
    </message>
    <message>
        <source>How many gripper(s) you want to control?</source>
        <translation>欲控制的夾爪數量</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>編號</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>連線</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>連線類型</translation>
    </message>
    <message>
        <source>IP</source>
        <translation>IP 位址</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>連接埠</translation>
    </message>
    <message>
        <source>Serial port</source>
        <translation>序列埠</translation>
    </message>
    <message>
        <source>scan</source>
        <translation>掃描</translation>
    </message>
    <message>
        <source>          Connect         </source>
        <translation>          連線          </translation>
    </message>
    <message>
        <source>          Activate        </source>
        <translation>          啟動          </translation>
    </message>
    <message>
        <source>    Disconnect   </source>
        <translation>    中斷連線    </translation>
    </message>
    <message>
        <source>Status</source>
        <translation>狀態</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>已斷線</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>連線中</translation>
    </message>
    <message>
        <source>Disconnecting</source>
        <translation>中斷連線中</translation>
    </message>
    <message>
        <source>Reconnect automatically</source>
        <translation>自動重新連線</translation>
    </message>
    <message>
        <source>Update period while moving</source>
        <translation>移動時的更新週期</translation>
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
        <translation>未定義</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>已斷線</translation>
    </message>
    <message>
        <source>Unconnected</source>
        <translation>未連線</translation>
    </message>
    <message>
        <source>Failure</source>
        <translation>連線失敗</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>已連線</translation>
    </message>
    <message>
        <source>Write EXCP</source>
        <translation>寫入異常</translation>
    </message>
    <message>
        <source>Read EXCP</source>
        <translation>讀取異常</translation>
    </message>
    <message>
        <source>Alive EXCP</source>
        <translation>心跳偵測異常</translation>
    </message>
    <message>
        <source>Version EXCP</source>
        <translation>版本異常</translation>
    </message>
    <message>
        <source>Device EXCP</source>
        <translation>裝置異常</translation>
    </message>
    <message>
        <source>Inactivate</source>
        <translation>未啟動</translation>
    </message>
    <message>
        <source>Activating</source>
        <translation>啟動中</translation>
    </message>
    <message>
        <source>Activated</source>
        <translation>已啟動</translation>
    </message>
    <message>
        <source>Moving</source>
        <translation>移動中</translation>
    </message>
    <message>
        <source>Turning</source>
        <translation>旋轉中</translation>
    </message>
    <message>
        <source>Arrived</source>
        <translation>已到位</translation>
    </message>
    <message>
        <source>Detected</source>
        <translation>偵測到物件</translation>
    </message>
    <message>
        <source>Dropped</source>
        <translation>物件掉落</translation>
    </message>
    <message>
        <source>Reconnecting</source>
        <translation>重新連線中</translation>
    </message>
    <message>
        <source>Reconnecting (%1)</source>
        <translation>重新連線中（%1）</translation>
    </message>
</context>
<context>
    <name>GripperWidget</name>
    <message>
        <source>Form</source>
        <translation>表單</translation>
    </message>
    <message>
        <source>Control</source>
        <translation>控制</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>設定</translation>
    </message>
</context>
<context>
    <name>MessageBox</name>
    <message>
        <source>Information</source>
        <translation>訊息</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Critical</source>
        <translation>嚴重錯誤</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>詢問</translation>
    </message>
</context>
<context>
    <name>TemplatePlugin</name>
    <message>
        <source>Peripheral</source>
        <translation>周邊設備</translation>
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
        <translation>夾爪步驟</translation>
    </message>
    <message>
        <source>Plug-in</source>
        <translation>外掛程式</translation>
    </message>
    <message>
        <source>Device ID</source>
        <translation>裝置編號</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Force</source>
        <translation>夾持力</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>Wait until the move ends</source>
        <translation>等待動作完成</translation>
    </message>
    <message>
        <source>Try on gripper</source>
        <translation>在夾爪上測試</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>確定</translation>
    </message>
    <message>
        <source>Condition type is not match</source>
        <translation>條件類型不符</translation>
    </message>
    <message>
        <source>Condition saved.</source>
        <translation>條件已儲存。</translation>
    </message>
    <message>
        <source>%1 plugin does not exist</source>
        <translation>%1 外掛程式不存在</translation>
    </message>
    <message>
        <source>Call plugin interface failed!                            
Function name : set_2_finger_gripper_param,                            
error info : %1</source>
        <translation>呼叫外掛程式介面失敗！                            
函式名稱 : set_2_finger_gripper_param,                            
錯誤資訊 : %1</translation>
    </message>
    <message>
        <source>position does not match the configuration information</source>
        <translation>位置與組態資訊不符</translation>
    </message>
    <message>
        <source>force does not match the configuration information</source>
        <translation>夾持力與組態資訊不符</translation>
    </message>
    <message>
        <source>speed does not match the configuration information</source>
        <translation>速度與組態資訊不符</translation>
    </message>
</context>
</TS>
